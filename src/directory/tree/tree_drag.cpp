#include "directory/tree/tree_drag.hpp"

#include "base/errors.hpp"
#include "directory/refusal.hpp"
#include "directory/tree/tree.hpp"
#include "session/form1.hpp"
#include "session/group_windows.hpp"
#include "session/hourglass.hpp"
#include "session/loaded_domain.hpp"
#include "session/log_tab.hpp"
#include "session/multi_user.hpp"
#include "session/session.hpp"

namespace twk::directory {
namespace {

using controls::ListRow;
using controls::TreeNode;
using session::Session;

void set_row_key(controls::ListView& list, std::string_view old_key, const std::string& key) {
  if (const ListRow* const row = list.find_key(old_key)) {
    base::Trap trap;
    trap([&] { list.set_key(list.at(list.place_of(*row)), key); });
  }
}

/// Everything that refers to the user by its path gets the new one.
void follow_user(Session& session, std::string_view old_key, const std::string& key) {
  set_row_key(session.domain.users, old_key, key);
  set_row_key(session.domain.NotMembers, old_key, key);
  if (session.form1.USERID_W2K.text.get() == old_key)
    session.form1.USERID_W2K.text = key;
}

/// The node under its new OU; an OU that could not be read now shows the user once it is read.
void move_node(Session& session, TreeNode& node, TreeNode& target, const std::string& key) {
  controls::TreeView& tree = session.domain.tree;
  const std::string text = node.text;
  tree.remove(node);
  TreeNode* moved = tree.find(key);
  if (moved == nullptr && is_read(tree, target))
    moved = &tree.add(&target, key, text, "USER");
  TreeNode& shown = moved == nullptr ? target : *moved;
  tree.select(&shown);
  tree.ensure_visible(shown);
}

bool move_user(Session& session, TreeNode& node, TreeNode& target) {
  const std::string old_key = node.key;
  const std::string text = node.text;
  TreeView1_Expand(session, target);
  std::string key;
  base::Trap trap;
  trap([&] {
    const session::Hourglass hourglass(session.form1);
    key = session.platform.directory.GetObject("LDAP://" + session.DomainName + "/" + target.key)
              ->MoveHere(old_key, std::nullopt)
              ->ADsPath();
  });
  if (trap.number() != 0) {
    tell_refusal(session, "Move User", "Cannot move " + text + " to " + target.text, trap);
    return false;
  }
  move_node(session, node, target, key);
  follow_user(session, old_key, key);
  session::LOG_TAB(session, session::kGreen, text + " Has been moved in the AD");
  return true;
}

}  // namespace

bool begin_drag(Session& session, const TreeNode& node) {
  if (!session::is_active_directory(session) || node.image != "USER")
    return false;
  session.form1.DragNode = node.key;
  session.form1.DropHighlight = std::string();
  return true;
}

void drag_over(Session& session, const TreeNode* node) {
  if (session.form1.DragNode.empty())
    return;
  const bool ou = node != nullptr && node->image == "OU";
  session.form1.DropHighlight = ou ? node->key : std::string();
}

void cancel_drag(Session& session) {
  session.form1.DragNode.clear();
  session.form1.DropHighlight = std::string();
}

bool drop(Session& session) {
  const controls::TreeView& tree = session.domain.tree;
  TreeNode* const node = tree.find(session.form1.DragNode);
  TreeNode* const target = tree.find(session.form1.DropHighlight.get());
  cancel_drag(session);
  if (node == nullptr || target == nullptr)
    return false;
  if (target->text == node->text || target == node->parent) {
    session.status.panel1 = node->text + " was not moved.";
    return false;
  }
  return move_user(session, *node, *target);
}

}  // namespace twk::directory
