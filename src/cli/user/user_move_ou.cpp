#include "cli/terminal/failures.hpp"
#include "cli/user/user_commands.hpp"
#include "controls/tree_view.hpp"
#include "directory/names.hpp"
#include "directory/tree/tree_drag.hpp"
#include "directory/tree/tree_path.hpp"
#include "session/form1.hpp"

namespace twk::cli {
namespace {

struct MoveArguments {
  std::string user;
  std::string ou;
};

controls::TreeNode& shown(controls::TreeNode* node, const std::string& name) {
  if (node == nullptr)
    throw Refused("The tree does not show " + name + ".");
  return *node;
}

/// Drags the user's node onto the OU's, as a person does.
int move_user(Context& context, const MoveArguments& arguments) {
  session::Session& session = context.session(Depth::kDomain);
  const Domain domain = context.domain();
  const std::string ou = locate_ou(domain, arguments.ou);
  const std::string user = locate_user(domain, arguments.user);
  controls::TreeNode& node =
      shown(directory::reach_user(session, "LDAP://" + session.DomainName + "/" + user), user);
  controls::TreeNode& target = shown(directory::reach_node(session, ou), ou);
  if (!directory::begin_drag(session, node))
    throw Refused(user + " cannot be moved.");
  directory::drag_over(session, &target);
  if (session.form1.DropHighlight.get().empty())
    throw Refused(ou + " is not an organizational unit.");
  return act_and_tell(
      context, session, [&] { return directory::drop(session); },
      [&] {
        const controls::TreeNode* const selected = session.form1.TreeView1.selected();
        const std::string key = selected == nullptr ? std::string() : selected->key;
        return Json{{"dn", directory::name_in_path(key)}};
      });
}

}  // namespace

void add_user_move_ou(Command& user, Context& context) {
  auto arguments = std::make_shared<MoveArguments>();
  auto* move = user.add_subcommand("move-ou", "Move a user to another organizational unit");
  move->add_option("NAME", arguments->user, "Account name, common name, principal name or distinguished name")
      ->required();
  move->add_option("OU", arguments->ou, "Organizational unit to move to")->required()->type_name("DN");
  move->callback(
      [=, &context] { context.set_action([=, &context] { return move_user(context, *arguments); }); });
}

}  // namespace twk::cli
