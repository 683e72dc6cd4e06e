#include "directory/tree/tree.hpp"

#include "base/errors.hpp"
#include "base/text.hpp"
#include "controls/drawing_off.hpp"
#include "directory/load_options.hpp"
#include "directory/names.hpp"
#include "directory/tree/unit_contents.hpp"
#include "session/loaded_domain.hpp"
#include "session/log_tab.hpp"
#include "session/session.hpp"

namespace twk::directory {
namespace {

using controls::TreeNode;
using platform::Buttons;
using platform::Icon;
using session::Session;

constexpr std::int32_t kUsersPerCount = 150;

/// Of an account that the tree would show by now; `name` in upper case. A key goes on with the container's
/// name, and the beginning that is looked for may reach into it.
bool is_foreseen(const Session& session, std::string_view name) {
  const session::RunLookups& lookups = session.import.lookups;
  if (!session::is_active_directory(session))
    return lookups.foreseen_in_tree.has(name);
  if (lookups.foreseen_in_tree.has_beginning(name))
    return true;
  for (std::size_t at = name.find(','); at != base::npos; at = name.find(',', at + 1)) {
    if (lookups.foreseen_container.starts_with(name.substr(at)) &&
        lookups.foreseen_in_tree.has(name.substr(0, at)))
      return true;
  }
  return false;
}

/// Tells how far the reading of users is; False at the limit, which a box reports.
bool count_shown_user(Session& session, std::int32_t limit) {
  if (++session.UserCount == 1) {
    session.status.panel1 = "Retrieving Users...";
    session.Error_Status_Text = "Error refeshing Treeview";
  }
  if (session.UserCount % kUsersPerCount == 0) {
    session.status.panel1 = base::to_text(session.UserCount) + " Users.";
    session.platform.dialogs.DoEvents();
  }
  if (session.UserCount != limit)
    return true;
  session.platform.dialogs.MsgBox(
      "TWK is not returning all users, The limit is set at " + base::to_text(limit) +
          "\r\nTo view all users you must change the setting in the AD options (under options menu)",
      Buttons::kOk, Icon::kInformation, "Limit Reached");
  return false;
}

void show_users(Session& session, const TreeNode& unit) {
  const std::int32_t limit = read_load_options(session).UserLimit;
  add_users(session, unit.key, {}, [&] { return count_shown_user(session, limit); });
  session.status.panel1 = base::to_text(session.UserCount) + " Users.";
}

}  // namespace

bool is_read(controls::TreeView& tree, const TreeNode& node) {
  const TreeNode* const next = tree.next(node);
  return next == nullptr || next->parent != &node || next->text != kDummyNode;
}

void TreeView1_Expand(Session& session, TreeNode& node) {
  controls::TreeView& tree = session.domain.tree;
  tree.set_expanded(node, true);
  if (&node == tree.first() || session.LoadAllUsersFlag || session.domain.looked_up.units)
    return;
  const controls::DrawingOff off(tree);
  Expand_OU(session, node);
}

bool Expand_OU(Session& session, TreeNode& node) {
  controls::TreeView& tree = session.domain.tree;
  session.Error_Status_Text = "Error with Treeview";
  if (is_read(tree, node))
    return false;
  TreeNode* const dummy = tree.next(node);
  bool done = false;
  base::Trap trap;
  trap([&] {
    session.Error_Status_Text = "Error with registry";
    session.UserCount = 0;
    session.Error_Status_Text = "Error Querying AD";
    if (!add_units(session, node.key, {}))
      return;
    tree.remove(*dummy);
    show_users(session, node);
    done = true;
  });
  if (trap.number() != 0) {
    session.platform.dialogs.MsgBox(session.Error_Status_Text, Buttons::kOk, Icon::kExclamation, "");
  }
  return done;
}

std::string user_key_start(const Session& session) {
  return "LDAP://" + session.DomainName + "/CN=";
}

bool is_name_taken(const Session& session, std::string_view key, std::string_view folded) {
  return session.domain.tree.has_key_with_prefix(key) || is_foreseen(session, folded);
}

bool User_Exist(Session& session, std::string_view name) {
  const std::string folded = base::upper(name);
  const bool taken = session::is_active_directory(session)
                         ? is_name_taken(session, user_key_start(session) + std::string(name), folded)
                         : session.domain.tree.has_text(name) || is_foreseen(session, folded);
  if (taken)
    session::LOG_TAB(session, session::kRed, " User Name " + std::string(name) + " already exist");
  return taken;
}

}  // namespace twk::directory
