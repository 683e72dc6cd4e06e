#include "cli/frame/context.hpp"
#include "cli/group/group_commands.hpp"
#include "cli/terminal/exit_codes.hpp"
#include "cli/terminal/failures.hpp"
#include "groups/groups_window.hpp"
#include "session/group_windows.hpp"

namespace twk::cli {
namespace {

int delete_group(Context& context, const std::string& name) {
  session::Session& session = groups_session(context, false);
  const std::string text = choose_group(context, session.groups.ListView1, name).text;
  context.dialogs().forget_trouble();
  const bool deleted = groups::Groupsfrm_Delete_Group_Click(session);
  if (!deleted && context.dialogs().last_trouble().empty()) {
    complain(text + ": nothing was done.");
    return kExitYellow;
  }
  return tell_group(context, text, deleted ? session::kGreen : session::kRed,
                    session.groups.StatusBar1.panel1.get());
}

}  // namespace

void add_group_delete(Command& group, Context& context) {
  auto name = std::make_shared<std::string>();
  auto* command = group.add_subcommand("delete", "Delete a group, but not its members; asks first");
  command->add_option("NAME", *name, "Account name, common name or distinguished name")->required();
  command->callback(
      [=, &context] { context.set_action([=, &context] { return delete_group(context, *name); }); });
}

}  // namespace twk::cli
