#include "directory/tree/follow_unit.hpp"

#include "base/errors.hpp"
#include "base/text.hpp"
#include "controls/drawing_off.hpp"
#include "directory/names.hpp"
#include "directory/tree/tree.hpp"
#include "platform/ldap_text.hpp"
#include "session/loaded_domain.hpp"
#include "session/session.hpp"

namespace twk::directory {
namespace {

using controls::ListView;
using controls::TreeNode;
using controls::TreeView;
using session::Session;

/// True for the name of the unit and of all below it, also at the end of a path.
bool is_below(std::string_view key, std::string_view unit) {
  if (key.size() < unit.size() || !base::equals_fold(key.substr(key.size() - unit.size()), unit))
    return false;
  const std::string_view before = key.substr(0, key.size() - unit.size());
  return before.empty() || before.ends_with(',') || before.ends_with('/');
}

template <typename Visit>
void for_rows_below(session::LoadedDomain& domain, std::string_view unit, const Visit& visit) {
  for (ListView* const list :
       {&domain.users, &domain.groups, &domain.units, &domain.selection, &domain.all_groups,
        &domain.template_choice, &domain.template_groups, &domain.Members, &domain.NotMembers,
        &domain.own_groups, &domain.other_groups}) {
    // From the last on: a removal there costs no walk.
    for (std::size_t place = list->size(); place-- > 0;) {
      if (is_below(list->at(place).key, unit))
        visit(*list, list->at(place));
    }
  }
}

std::string name_of(std::string_view unit) {
  return platform::plain_name(relative_name(unit));
}

/// A copy of the node with all below it, whose keys end in `now` instead of `before`.
TreeNode& copy_below(TreeView& tree, const TreeNode& node, TreeNode& above, const std::string& before,
                     const std::string& now) {
  std::string key = node.key;
  if (!key.empty())
    key.replace(key.size() - before.size(), before.size(), now);
  const bool renamed = base::equals_fold(node.key, before);
  TreeNode& copy = tree.add(&above, std::move(key), renamed ? name_of(now) : node.text, node.image);
  copy.sorted = node.sorted;
  copy.expanded = node.expanded;
  copy.marks = node.marks;
  for (const TreeNode* const child : node.children)
    copy_below(tree, *child, copy, before, now);
  return copy;
}

void follow_in_tree(Session& session, const std::string& before, const std::string& now) {
  TreeView& tree = session.domain.tree;
  TreeNode* const node = tree.find(before);
  if (node == nullptr)
    return;
  TreeNode* const above = tree.find(name_above(now));
  TreeNode* shown = above;
  {
    const controls::DrawingOff off(tree);
    // In another letter case the name is its own neighbour.
    if (above != nullptr && base::equals_fold(before, now)) {
      tree.set_key(*node, now);
      tree.set_text(*node, name_of(now));
      shown = node;
    } else {
      if (above != nullptr && is_read(tree, *above))
        shown = &copy_below(tree, *node, *above, before, now);
      tree.remove(*node);
    }
  }
  tree.select(shown);
  if (shown != nullptr)
    tree.ensure_visible(*shown);
}

}  // namespace

void follow_unit(Session& session, const std::string& before, const std::string& now) {
  follow_in_tree(session, before, now);
  for_rows_below(session.domain, before, [&](ListView& list, controls::ListRow& row) {
    std::string key = row.key;
    key.replace(key.size() - before.size(), before.size(), now);
    base::Trap taken;
    taken([&] { list.set_key(row, key); });
    if (base::equals_fold(key, now))
      list.set_text(row, name_of(now));
  });
}

void forget_unit(Session& session, const std::string& unit) {
  for_rows_below(session.domain, unit,
                 [](ListView& list, const controls::ListRow& row) { list.remove(row); });
  TreeView& tree = session.domain.tree;
  TreeNode* const node = tree.find(unit);
  if (node == nullptr)
    return;
  TreeNode* const above = node->parent;
  tree.remove(*node);
  tree.select(above);
}

}  // namespace twk::directory
