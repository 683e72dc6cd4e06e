#include "directory/tree/tree.hpp"

#include "base/errors.hpp"
#include "base/text.hpp"
#include "controls/drawing_off.hpp"
#include "directory/account_marks.hpp"
#include "directory/load_options.hpp"
#include "directory/loading/ad_load.hpp"
#include "directory/names.hpp"
#include "directory/operations.hpp"
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

/// False when the query failed, which a box reported.
bool add_ous(Session& session, const std::string& base, const platform::QueryOptions& properties) {
  std::unique_ptr<platform::Recordset> rows;
  base::Trap trap;
  trap([&] {
    rows = run_query(session,
                     base +
                         ">;(&(objectCategory=OrganizationalUnit)(objectClass=OrganizationalUnit));"
                         "distinguishedName,name;onelevel",
                     properties);
  });
  if (trap.number() != 0) {
    session.platform.dialogs.MsgBox("Error getting Domain Data: " + base::to_text(trap.number()),
                                    Buttons::kOk, Icon::kNone, "");
    return false;
  }
  controls::TreeView& tree = session.domain.tree;
  for (; !rows->at_eof(); rows->MoveNext()) {
    const std::string key = rows->field(0).text();
    TreeNode& node = tree.add_under(parent_of_ou(key), key, rows->field(1).text(), "OU");
    tree.add(&node, {}, std::string(kDummyNode), {});
  }
  return true;
}

void add_user(Session& session, const std::string& found_path, const std::string& path,
              const std::string& shown, std::uint8_t marks) {
  const std::string parent = parent_of_user(found_path);
  base::Trap trap;
  if (trap([&] { session.domain.tree.add_under(parent, path, shown, "USER").marks = marks; }))
    return;
  session.platform.dialogs.MsgBox("error adding user to tree", Buttons::kOk, Icon::kNone, "");
  if (!session::logs_load(session))
    return;
  session.log.line("Error Number:" + base::to_text(trap.number()));
  session.log.line("Adding:  " + path);
  session.log.line("To OU:   " + parent);
}

void add_users(Session& session, const std::string& base, const LoadOptions& options) {
  const bool by_name = shows_names(session);
  platform::QueryOptions properties = query_options(options);
  if (!by_name && options.Sort)
    properties.sort_on = "DisplayName";
  const auto rows = run_query(session,
                              base + ">;(&(objectCategory=Person)(objectClass=User));adsPath," +
                                  (by_name ? "name" : "DisplayName") + ",name," +
                                  std::string(AccountMarks::kAttributes) + ";onelevel",
                              properties);
  AccountMarks marks(session);
  session.status.panel1 = "Retrieving Users...";
  session.Error_Status_Text = "Error refeshing Treeview";
  for (; !rows->at_eof(); rows->MoveNext()) {
    const std::string found_path = rows->field(0).text();
    const platform::Value shown = rows->field(1);
    add_user(session, found_path, rewrite_path(options.Search, found_path),
             shown.is_empty() ? rows->field(2).text() : shown.text(), marks.of(*rows, 3));
    ++session.UserCount;
    if (session.UserCount % kUsersPerCount == 0) {
      session.status.panel1 = base::to_text(session.UserCount) + " Users.";
      session.platform.dialogs.DoEvents();
    }
    if (session.UserCount == options.UserLimit) {
      rows->MoveLast();
      session.platform.dialogs.MsgBox(
          "TWK is not returning all users, The limit is set at " + base::to_text(options.UserLimit) +
              "\r\nTo view all users you must change the setting in the AD options (under options menu)",
          Buttons::kOk, Icon::kInformation, "Limit Reached");
    }
  }
  session.status.panel1 = base::to_text(session.UserCount) + " Users.";
}

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

}  // namespace

bool is_read(controls::TreeView& tree, const TreeNode& node) {
  const TreeNode* const next = tree.next(node);
  return next == nullptr || next->parent != &node || next->text != kDummyNode;
}

void TreeView1_Expand(Session& session, TreeNode& node) {
  controls::TreeView& tree = session.domain.tree;
  tree.set_expanded(node, true);
  if (&node == tree.first() || session.LoadAllUsersFlag)
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
    const LoadOptions options = read_load_options(session);
    session.Error_Status_Text = "Error Querying AD";
    const std::string base = "<" + options.Search + session.DomainName + "/" + node.key;
    if (!add_ous(session, base, query_options(options)))
      return;
    tree.remove(*dummy);
    add_users(session, base, options);
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
