#include "cli/frame/rehearsed_steps.hpp"
#include "cli/frame/resource_session.hpp"
#include "cli/terminal/exit_codes.hpp"
#include "cli/terminal/failures.hpp"
#include "cli/user/user_commands.hpp"
#include "directory/user_details.hpp"
#include "directory/user_difference.hpp"
#include "lifecycle/account/become_like.hpp"

namespace twk::cli {
namespace {

struct CopyArguments {
  std::string name;
  std::string like;
  bool exactly = false;
  bool dry_run = false;
};

struct DiffArguments {
  std::string first;
  std::string second;
  bool all = false;
};

std::string names_text(const std::vector<std::string>& names) {
  std::string text;
  for (const std::string& name : names)
    text += (text.empty() ? "" : ", ") + name;
  return text;
}

std::string message_of(const CopyArguments& arguments, const lifecycle::LikeOutcome& outcome) {
  std::string text;
  const auto part = [&](const std::string& what) { text += (text.empty() ? "" : "; ") + what; };
  if (!outcome.joined.empty())
    part("joined " + names_text(outcome.joined));
  if (!outcome.left.empty())
    part("left " + names_text(outcome.left));
  if (!outcome.moved_to.empty())
    part("moved to " + outcome.moved_to);
  for (const std::string& failure : outcome.failures)
    part(failure);
  return arguments.name + (text.empty() ? " is like " + arguments.like + " already." : ": " + text);
}

int copy_user(Context& context, const CopyArguments& arguments) {
  const Domain domain = context.domain();
  const std::string user = locate_user(domain, arguments.name);
  const std::string like = locate_user(domain, arguments.like);
  if (user == like)
    throw UsageError("--like names another user");
  if (arguments.dry_run)
    print_steps(context);
  session::Session& session = resource_session(context);
  // The services of the session, which in a rehearsal change nothing.
  const Domain worked_on = directory::account_domain(session);
  lifecycle::LikeOutcome outcome;
  const auto work = [&] {
    outcome = lifecycle::become_like(worked_on, bind_user(worked_on, user), bind_user(worked_on, like),
                                     arguments.exactly);
  };
  if (arguments.dry_run) {
    work();
    if (outcome.failures.empty())
      return kExitGreen;
  } else {
    in_log_block(session, [&] {
      work();
      session.log.line(message_of(arguments, outcome));
    });
  }
  const std::string_view light = outcome.failures.empty() ? session::kGreen : session::kYellow;
  const std::string message = message_of(arguments, outcome);
  return tell_light(context, light, message,
                    {{"user", arguments.name},
                     {"dn", outcome.dn},
                     {"joined", outcome.joined},
                     {"left", outcome.left},
                     {"warnings", warnings_of(light, message, outcome.failures)}});
}

int compare_users(Context& context, const DiffArguments& arguments) {
  const Domain domain = context.domain();
  const platform::ObjectPtr first = bind_user(domain, arguments.first);
  const platform::ObjectPtr second = bind_user(domain, arguments.second);
  std::vector<Json> rows;
  for (const directory::Difference& one : directory::user_differences(domain, first, second, arguments.all))
    rows.push_back({{"what", one.what}, {"first", one.first}, {"second", one.second}});
  context.output().table({{"what", "What"}, {"first", arguments.first}, {"second", arguments.second}}, rows);
  if (rows.empty())
    complain(arguments.first + " and " + arguments.second + " do not differ");
  return kExitGreen;
}

}  // namespace

void add_user_compare(Command& user, Context& context) {
  constexpr const char* kAnyName = "Account name, common name, principal name or distinguished name";
  auto order = std::make_shared<CopyArguments>();
  auto* copy = user.add_subcommand("copy", "Bring a user to the groups and the unit of another one");
  copy->add_option("NAME", order->name, kAnyName)->required();
  copy->add_option("--like", order->like, "The user to be like")->required()->type_name("USER");
  copy->add_flag("--exactly", order->exactly, "Leave the groups that the other one is not in");
  copy->add_flag("--dry-run", order->dry_run, "Print what would be done, in order, and do nothing");
  copy->callback([=, &context] { context.set_action([=, &context] { return copy_user(context, *order); }); });

  auto arguments = std::make_shared<DiffArguments>();
  auto* diff = user.add_subcommand("diff", "Show where two users differ: unit, groups, attributes");
  diff->add_option("FIRST", arguments->first, kAnyName)->required();
  diff->add_option("SECOND", arguments->second, "The other one")->required();
  diff->add_flag("--all", arguments->all,
                 "Also identifiers, names, times and counts, which are each user's own");
  add_csv_option(*diff, context);
  diff->callback(
      [=, &context] { context.set_action([=, &context] { return compare_users(context, *arguments); }); });
}

}  // namespace twk::cli
