#include "base/text.hpp"
#include "cli/frame/rehearsed_steps.hpp"
#include "cli/frame/user_fields.hpp"
#include "cli/terminal/exit_codes.hpp"
#include "cli/terminal/failures.hpp"
#include "cli/user/user_commands.hpp"
#include "directory/user_details.hpp"

namespace twk::cli {
namespace {

struct SetArguments {
  std::string name;
  std::vector<std::string> assignments;
  std::optional<std::string> expires_after;
  bool dry_run = false;
};

/// The assignments, including the one that --expires-after means.
std::vector<std::string> all_assignments(const SetArguments& arguments) {
  std::vector<std::string> all = arguments.assignments;
  if (arguments.expires_after) {
    for (const std::string& assignment : all) {
      if (base::starts_with_fold(assignment, "expires="))
        throw UsageError("give either expires= or --expires-after");
    }
    all.push_back("expires=end of " + *arguments.expires_after);
  }
  if (all.empty())
    throw UsageError("give at least one FIELD=VALUE, or --expires-after DAY");
  return all;
}

int set_user(Context& context, const SetArguments& arguments) {
  const std::vector<std::string> assignments = all_assignments(arguments);
  if (arguments.dry_run)
    print_steps(context);
  session::Session& session = context.session(Depth::kNamed);
  const directory::UserDetails before = read_details(context, session, arguments.name);
  directory::UserChange change{.details = before,
                               .changed = {},
                               .must_change_before = before.must_change,
                               .was_locked_out = before.locked_out};
  assign_fields(session, change.details, assignments);
  change.changed = directory::parts_that_differ(before, change.details);
  session.run.user = before.name;
  const directory::SaveOutcome outcome = directory::save_user_details(session, change);
  const bool whole = outcome.saved && outcome.refused.empty();
  const std::string light(whole ? session::kGreen : outcome.saved ? session::kYellow : session::kRed);
  if (arguments.dry_run && whole)
    return kExitGreen;
  context.output().result({{"user", before.name},
                           {"light", light},
                           {"message", outcome.message},
                           {"warnings", warnings_of(light, outcome.message, outcome.refused)}},
                          context.output().light(light) + "  " + before.name + ": " + outcome.message);
  return exit_code_of_light(light);
}

}  // namespace

void add_user_set(Command& user, Context& context) {
  auto arguments = std::make_shared<SetArguments>();
  auto* set = user.add_subcommand("set", "Change fields of a user");
  set->add_option("NAME", arguments->name, "Account name, common name, principal name or distinguished name")
      ->required();
  set->add_option("FIELD=VALUE", arguments->assignments, "A field and its new value; empty clears it")
      ->type_name("");
  set->add_option("--expires-after", arguments->expires_after,
                  "Last day of the account, which expires at its end")
      ->type_name("DAY");
  add_dry_run(*set, arguments->dry_run);
  set->callback(
      [=, &context] { context.set_action([=, &context] { return set_user(context, *arguments); }); });
}

}  // namespace twk::cli
