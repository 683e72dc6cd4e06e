#include "directory/tree/tree_path.hpp"

#include <algorithm>
#include <vector>

#include "base/errors.hpp"
#include "base/text.hpp"
#include "directory/load_options.hpp"
#include "directory/names.hpp"
#include "directory/tree/tree.hpp"
#include "directory/tree/unit_contents.hpp"
#include "platform/adsi.hpp"
#include "session/loaded_domain.hpp"
#include "session/session.hpp"

namespace twk::directory {
namespace {

using controls::TreeNode;

/// A name and all its parents, from the top.
std::vector<std::string_view> names_down_to(std::string_view name) {
  std::vector<std::string_view> names;
  for (; !name.empty(); name = name_above(name))
    names.push_back(name);
  std::reverse(names.begin(), names.end());
  return names;
}

/// A user who was left out by the limit on users shown in a unit.
TreeNode* add_hidden_user(session::Session& session, TreeNode& above, std::string_view key) {
  base::Trap not_there;
  TreeNode* added = nullptr;
  not_there([&] {
    const platform::User user(session.platform.directory.GetObject(key));
    const std::string name = ou_name(user.Name());
    const std::string shown = shows_names(session) ? name : user.FullName();
    added = &session.domain.tree.add(&above, std::string(key), shown.empty() ? name : shown, "USER");
  });
  return added;
}

}  // namespace

TreeNode* reach_node(session::Session& session, std::string_view distinguished_name) {
  controls::TreeView& tree = session.domain.tree;
  TreeNode* reached = tree.first();
  if (reached == nullptr)
    return nullptr;
  const std::vector<std::string_view> names = names_down_to(distinguished_name);
  auto name = std::find_if(names.begin(), names.end(), [reached](std::string_view candidate) {
    return base::equals_fold(candidate, reached->key);
  });
  if (name == names.end())
    return nullptr;
  while (++name != names.end()) {
    TreeView1_Expand(session, *reached);
    look_up_unit(session, reached->key, *name);
    TreeNode* const child = tree.find(*name);
    if (child == nullptr || child->parent != reached)
      return nullptr;
    reached = child;
  }
  return reached;
}

TreeNode* reach_user(session::Session& session, std::string_view key) {
  controls::TreeView& tree = session.domain.tree;
  if (!session::is_active_directory(session))
    return tree.find(nt_user_key(key));
  TreeNode* const above = reach_node(session, name_above(name_in_path(key)));
  if (above == nullptr)
    return nullptr;
  TreeView1_Expand(session, *above);
  look_up_user(session, above->key, name_in_path(key));
  TreeNode* const user = tree.find(key);
  if (user == nullptr && is_read(tree, *above))
    return add_hidden_user(session, *above, key);
  return user != nullptr && user->parent == above ? user : nullptr;
}

}  // namespace twk::directory
