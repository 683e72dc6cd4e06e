#include "cli/frame/commands.hpp"
#include "cli/frame/context.hpp"
#include "cli/frame/rehearsed_steps.hpp"
#include "cli/frame/user_runs.hpp"
#include "cli/terminal/exit_codes.hpp"
#include "cli/terminal/failures.hpp"
#include "cli/user/user_commands.hpp"
#include "lifecycle/deletion/delete_profile.hpp"

namespace twk::cli {
namespace {

struct ProfileArguments {
  std::string name;
  std::string workstation;
  std::string kind;
  bool even_if_shared = false;
  bool dry_run = false;
};

/// The progress line follows the status line, which work on files does not write.
class StatusView final : public ConsoleView {
 public:
  StatusView(Context& context, session::Session& session)
      : ConsoleView(context, session),
        watch_(session.status.panel1.watch([this, &session] { step(session.status.panel1.get()); })) {}

 private:
  controls::Watch watch_;
};

bool delete_it(Context& context, session::Session& session, const lifecycle::ProfileOrder& order,
               const ProfileArguments& arguments) {
  StatusView view(context, session);
  if (arguments.workstation.empty())
    return lifecycle::delete_server_profile(session, order, view);
  return lifecycle::delete_workstation_profile(session, order,
                                               {arguments.workstation, arguments.kind == "nt40"}, view);
}

int delete_profile(Context& context, const ProfileArguments& arguments) {
  if (arguments.workstation.empty() != arguments.kind.empty())
    throw UsageError("--workstation and --kind belong together");
  if (arguments.dry_run)
    print_steps(context);
  session::Session& session = context.session(Depth::kNamed);
  const controls::TreeNode& node = reach_user(context, session, arguments.name);
  session.run.user = node.text;
  lifecycle::ProfileOrder order{node.text, node.key, {}};
  order.terms.even_if_shared = consent_of(arguments.even_if_shared);
  if (arguments.dry_run)
    tell_trees(context, order.terms);
  const bool deleted = delete_it(context, session, order, arguments);
  if (!deleted)
    throw Refused(session.status.panel1.get());
  if (arguments.dry_run)
    return kExitGreen;
  context.output().result({{"light", session::kGreen}, {"user", arguments.name}},
                          context.output().light(session::kGreen) + "  Profile of " + node.text + " deleted");
  return kExitGreen;
}

}  // namespace

void add_profile_commands(Command& app, Context& context) {
  auto arguments = std::make_shared<ProfileArguments>();
  auto* profile = app.add_subcommand("profile", "Profiles of users");
  profile->require_subcommand();
  auto* remove =
      profile->add_subcommand("delete", "Delete the profile of a user on the server, or on a workstation");
  remove
      ->add_option("NAME", arguments->name, "Account name, common name, principal name or distinguished name")
      ->required();
  remove->add_option("--workstation", arguments->workstation, "The copy on this workstation")->type_name("W");
  remove->add_option("--kind", arguments->kind, "What the workstation runs: w2k or nt40")
      ->check(Check::one_of({"w2k", "nt40"}))
      ->type_name("WORD");
  add_even_if_shared(*remove, arguments->even_if_shared);
  add_dry_run(*remove, arguments->dry_run);
  remove->callback(
      [=, &context] { context.set_action([=, &context] { return delete_profile(context, *arguments); }); });
}

}  // namespace twk::cli
