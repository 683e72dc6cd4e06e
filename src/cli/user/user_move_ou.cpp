#include "cli/frame/rehearsed_steps.hpp"
#include "cli/terminal/failures.hpp"
#include "cli/user/user_commands.hpp"
#include "controls/tree_view.hpp"
#include "directory/names.hpp"
#include "directory/tree/change_ou.hpp"
#include "directory/tree/tree_path.hpp"

namespace twk::cli {
namespace {

struct MoveOuArguments {
  std::string user;
  std::string ou;
  bool dry_run = false;
};

controls::TreeNode& shown(controls::TreeNode* node, const std::string& name) {
  if (node == nullptr)
    throw Refused("The tree does not show " + name + ".");
  return *node;
}

int move_user(Context& context, const MoveOuArguments& arguments) {
  if (arguments.dry_run)
    print_steps(context);
  session::Session& session = context.session(Depth::kNamed);
  const Domain domain = context.domain();
  const std::string ou = locate_ou(domain, arguments.ou);
  const std::string user = locate_user(domain, arguments.user);
  controls::TreeNode& node =
      shown(directory::reach_user(session, "LDAP://" + session.DomainName + "/" + user), user);
  controls::TreeNode& target = shown(directory::reach_node(session, ou), ou);
  if (!session::is_active_directory(session) || node.image != "USER")
    throw Refused(user + " cannot be moved.");
  if (target.image != "OU")
    throw Refused(ou + " is not an organizational unit.");
  session.run.user = node.text;
  std::optional<std::string> key;
  return act_and_tell(
      context, session,
      [&] {
        key = directory::change_ou(session, node, target);
        return key.has_value();
      },
      [&] {
        return Json{{"dn", directory::name_in_path(key.value_or(std::string()))}};
      });
}

}  // namespace

void add_user_move_ou(Command& user, Context& context) {
  auto arguments = std::make_shared<MoveOuArguments>();
  auto* move = user.add_subcommand(
      "move-ou",
      "Move a user to another organizational unit; `user move` moves the user's data to another site");
  move->add_option("NAME", arguments->user, "Account name, common name, principal name or distinguished name")
      ->required();
  move->add_option("OU", arguments->ou, "Organizational unit to move to")->required()->type_name("DN");
  add_dry_run(*move, arguments->dry_run);
  move->callback(
      [=, &context] { context.set_action([=, &context] { return move_user(context, *arguments); }); });
}

}  // namespace twk::cli
