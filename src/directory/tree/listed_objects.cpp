#include "directory/tree/listed_objects.hpp"

#include <utility>

#include "base/errors.hpp"
#include "base/text.hpp"
#include "controls/tree_view.hpp"
#include "directory/load_options.hpp"
#include "directory/loading/ad_load.hpp"
#include "directory/tree/tree.hpp"
#include "session/loaded_domain.hpp"
#include "session/session.hpp"

namespace twk::directory {
namespace {

using session::Session;

void add_to_lists(Session& session, const NewUser& user) {
  if (skips_users(session))
    return;
  base::Trap trap;
  trap([&] { session.domain.users.add(user.list_key, user.shown, "USER"); });
  trap([&] { session.domain.NotMembers.add(user.list_key, user.user_id, "USER"); });
}

void add_to_tree(Session& session, const NewUser& user) {
  controls::TreeView& tree = session.domain.tree;
  base::Trap trap;
  trap([&] { tree.ensure_visible(tree.add_under(user.container, user.node_key, user.shown, "USER")); });
}

/// False for a container whose users were not read yet: they come with its first expansion.
bool container_is_read(Session& session) {
  const controls::TreeNode* const selected = session.domain.tree.selected();
  return selected == nullptr || is_read(session.domain.tree, *selected);
}

}  // namespace

std::vector<ListedGroup> find_groups(Session& session, std::string_view name) {
  // The columns of an import may name any group.
  if (std::exchange(session.domain.looked_up.groups, false))
    Load_AD_Groups(session);
  std::vector<ListedGroup> groups;
  for (const controls::ListRow* row : session.domain.all_groups.find_text(name))
    groups.push_back({row->text, row->key});
  return groups;
}

void show_new_user(Session& session, const NewUser& user) {
  if (!session::is_active_directory(session) || container_is_read(session))
    add_to_tree(session, user);
  add_to_lists(session, user);
}

bool is_container_shown(Session& session, std::string_view container) {
  return container_is_read(session) && session.domain.tree.find(container) != nullptr;
}

void foresee_new_user(Session& session, const NewUser& user) {
  session::RunLookups& lookups = session.import.lookups;
  if (!session::is_active_directory(session)) {
    lookups.foreseen_in_tree.add(base::upper(user.shown));
    return;
  }
  if (!is_container_shown(session, user.container))
    return;
  // All of a run go into one container.
  if (lookups.foreseen_container.empty())
    lookups.foreseen_container = base::upper("," + user.container);
  const std::string key = base::upper(user.node_key);
  const std::size_t name = user_key_start(session).size();
  lookups.foreseen_in_tree.add(
      std::string_view(key).substr(name, key.size() - name - lookups.foreseen_container.size()));
}

}  // namespace twk::directory
