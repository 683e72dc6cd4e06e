#include "cli/frame/context.hpp"
#include "cli/frame/rehearsed_steps.hpp"
#include "cli/group/group_commands.hpp"
#include "cli/terminal/exit_codes.hpp"
#include "cli/terminal/failures.hpp"
#include "groups/delete_group.hpp"

namespace twk::cli {
namespace {

int delete_group(Context& context, const std::string& name, bool dry_run) {
  if (dry_run)
    print_steps(context);
  session::Session& session = groups_session(context, false);
  const groups::GroupRow group = find_group(context, session, name);
  if (!dry_run && !groups::confirm_deletion(session, group.name)) {
    complain(group.name + ": nothing was done.");
    return kExitYellow;
  }
  const groups::GroupOutcome outcome = groups::delete_group(session, group);
  return tell_group(context, group.name, outcome.light, outcome.text);
}

}  // namespace

void add_group_delete(Command& group, Context& context) {
  auto name = std::make_shared<std::string>();
  auto dry_run = std::make_shared<bool>(false);
  auto* command = group.add_subcommand("delete", "Delete a group, but not its members; asks first");
  command->add_option("NAME", *name, "Account name, common name or distinguished name")->required();
  add_dry_run(*command, *dry_run);
  command->callback([=, &context] {
    context.set_action([=, &context] { return delete_group(context, *name, *dry_run); });
  });
}

}  // namespace twk::cli
