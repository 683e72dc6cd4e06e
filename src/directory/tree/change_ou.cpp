#include "directory/tree/change_ou.hpp"

#include "base/errors.hpp"
#include "directory/names.hpp"
#include "directory/refusal.hpp"
#include "directory/tree/tree.hpp"
#include "session/loaded_domain.hpp"
#include "session/log_tab.hpp"
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
}

/// The node under its new OU; an OU that could not be read now shows the user once it is read.
void move_node(Session& session, TreeNode& node, TreeNode& target, const std::string& key) {
  controls::TreeView& tree = session.domain.tree;
  const std::string text = node.text;
  const std::uint8_t marks = node.marks;
  tree.remove(node);
  TreeNode* moved = tree.find(key);
  if (moved == nullptr && is_read(tree, target))
    moved = &tree.add(&target, key, text, "USER");
  if (moved != nullptr)
    tree.set_marks(*moved, marks);
  TreeNode& shown = moved == nullptr ? target : *moved;
  tree.select(&shown);
  tree.ensure_visible(shown);
}

}  // namespace

std::string follow_moved_user(Session& session, const std::string& old_key, const std::string& unit) {
  controls::TreeView& tree = session.domain.tree;
  std::string key =
      "LDAP://" + session.DomainName + "/" + std::string(relative_name(name_in_path(old_key))) + "," + unit;
  TreeNode* const node = tree.find(old_key);
  TreeNode* const target = tree.find(unit);
  if (node != nullptr && target != nullptr)
    move_node(session, *node, *target, key);
  else if (node != nullptr)
    tree.remove(*node);
  follow_user(session, old_key, key);
  return key;
}

std::optional<std::string> change_ou(Session& session, TreeNode& node, TreeNode& target) {
  if (target.text == node.text || &target == node.parent) {
    session.status.panel1 = node.text + " was not moved.";
    return std::nullopt;
  }
  const std::string old_key = node.key;
  const std::string text = node.text;
  TreeView1_Expand(session, target);
  std::string key;
  base::Trap trap;
  trap([&] {
    key = session.platform.directory.GetObject("LDAP://" + session.DomainName + "/" + target.key)
              ->MoveHere(old_key, std::nullopt)
              ->ADsPath();
  });
  if (trap.number() != 0) {
    tell_refusal(session, "Move User", "Cannot move " + text + " to " + target.text, trap);
    return std::nullopt;
  }
  move_node(session, node, target, key);
  follow_user(session, old_key, key);
  session::LOG_TAB(session, session::kGreen, text + " Has been moved in the AD");
  return key;
}

}  // namespace twk::directory
