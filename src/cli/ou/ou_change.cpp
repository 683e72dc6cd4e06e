#include "base/error_words.hpp"
#include "base/errors.hpp"
#include "base/text.hpp"
#include "cli/frame/rehearsed_steps.hpp"
#include "cli/frame/resource_session.hpp"
#include "cli/ou/ou_commands.hpp"
#include "cli/terminal/failures.hpp"
#include "directory/units.hpp"
#include "platform/directory.hpp"

namespace twk::cli {
namespace {

struct ChangeArguments {
  std::string dn;
  std::string to;  ///< the new name, or where it shall be
  bool dry_run = false;
};

/// Does it; a refusal of the directory is one of the command. The unit that is managed may be elsewhere then.
int change(Context& context, session::Session& session, const std::string& ou,
           const std::function<std::string()>& step) {
  std::string now;
  base::Trap trap;
  if (!trap([&] { now = step(); })) {
    if (trap.number() == platform::ads_error::kServerDown ||
        trap.number() == platform::ads_error::kAccessDenied)
      throw base::RuntimeError(trap.number(), trap.description());
    throw Refused(ou + ": " + base::in_words(trap.number(), trap.description()));
  }
  if (!context.rehearses() && !session.ManagedOU.empty() && directory::lies_in_unit(session.ManagedOU, ou)) {
    complain("the managed unit is in it, which `twk ou manage` still expects at " + session.ManagedOU +
             ": choose it again");
  }
  return tell_light(context, session::kGreen, ou + " is now " + now, {{"dn", now}, {"was", ou}});
}

int rename_ou(Context& context, const ChangeArguments& arguments) {
  const std::string name(base::trim(arguments.to));
  if (const std::string fault = directory::unit_name_fault(name); !fault.empty())
    throw UsageError(fault);
  if (arguments.dry_run)
    print_steps(context);
  session::Session& session = resource_session(context);
  const std::string ou = locate_own_ou(context, arguments.dn);
  return change(context, session, ou, [&] { return directory::rename_unit(session, ou, name); });
}

int move_ou(Context& context, const ChangeArguments& arguments) {
  if (arguments.dry_run)
    print_steps(context);
  session::Session& session = resource_session(context);
  const std::string ou = locate_own_ou(context, arguments.dn);
  const std::string target = locate_ou(context.domain(), arguments.to);
  if (!base::starts_with_fold(target, "OU=") && !base::starts_with_fold(target, "DC="))
    throw Refused(target + " is neither an organizational unit nor the domain.");
  if (directory::lies_in_unit(target, ou))
    throw Refused(ou + " cannot be moved into itself.");
  return change(context, session, ou, [&] { return directory::move_unit(session, ou, target); });
}

void add_change(Command& ou, Context& context, const char* name, const char* what, const char* to,
                const char* to_what, int (*action)(Context&, const ChangeArguments&)) {
  auto arguments = std::make_shared<ChangeArguments>();
  auto* command = ou.add_subcommand(name, what);
  command->add_option("DN", arguments->dn, "Its distinguished name")->required();
  command->add_option(to, arguments->to, to_what)->required();
  add_dry_run(*command, arguments->dry_run);
  command->callback(
      [=, &context] { context.set_action([=, &context] { return action(context, *arguments); }); });
}

}  // namespace

std::string locate_own_ou(Context& context, const std::string& dn) {
  std::string ou = locate_ou(context.domain(), dn);
  if (!base::starts_with_fold(ou, "OU="))
    throw Refused(ou + " is not an organizational unit.");
  return ou;
}

void add_ou_change(Command& ou, Context& context) {
  add_change(ou, context, "rename", "Rename an organizational unit", "NAME", "Its new name", rename_ou);
  add_change(ou, context, "move", "Move an organizational unit with everything in it", "TARGET",
             "The unit or the domain that it shall be in, by distinguished name", move_ou);
}

}  // namespace twk::cli
