#include "directory/tree/find_user.hpp"

#include <map>
#include <utility>

#include "base/error_words.hpp"
#include "base/errors.hpp"
#include "base/text.hpp"
#include "controls/drawing_off.hpp"
#include "directory/names.hpp"
#include "directory/operations.hpp"
#include "directory/tree/tree_path.hpp"
#include "directory/user_details.hpp"
#include "platform/ldap_text.hpp"
#include "session/directory_windows.hpp"
#include "session/form1.hpp"
#include "session/hourglass.hpp"
#include "session/loaded_domain.hpp"
#include "session/session.hpp"

namespace twk::directory {
namespace {

using controls::TreeNode;
using platform::Answer;
using platform::Buttons;
using platform::Icon;
using session::Session;

/// Between the "*" at both ends of the filter's value.
std::string filter_text(std::string_view typed) {
  std::string value;
  for (const std::string& part : base::split(typed, '*')) {
    if (!value.empty() && !part.empty())
      value += '*';
    value += platform::escape_filter_value(part);
  }
  return value;
}

void select_node(Session& session, TreeNode& node) {
  session.domain.tree.select(&node);
  session.domain.tree.ensure_visible(node);
}

void tell_not_found(Session& session) {
  session.platform.dialogs.MsgBox("User not found.", Buttons::kOk, Icon::kInformation, "Search");
}

/// Ordered by name, so that the first is also shown first.
void add_found_users(Session& session, std::string_view text) {
  const TreeNode* const root = session.domain.tree.first();
  const auto rows = run_query(session, "<LDAP://" + session.DomainName + "/" + root->key +
                                           ">;(&(objectCategory=Person)(objectClass=User)(cn=*" +
                                           filter_text(text) + "*));adsPath,name;subtree");
  std::multimap<std::string, std::pair<std::string, std::string>> by_name;
  for (; !rows->at_eof(); rows->MoveNext()) {
    const std::string name = rows->field(1).text();
    by_name.emplace(base::upper(name), std::pair(rows->field(0).text(), name));
  }
  for (const auto& [folded, user] : by_name) {
    const auto& [key, name] = user;
    session.find_user.ListView1.add(key, name, "USER", {std::string(name_in_path(key))});
  }
}

}  // namespace

void Find_User(Session& session) {
  if (!session::is_active_directory(session)) {
    Find_NT_User(session);
    return;
  }
  frmFindW2KUser_Load(session);
  session.platform.dialogs.show_modal("frmFindW2KUser");
}

TreeNode* next_user_with(Session& session, const TreeNode* node, std::string_view text) {
  controls::TreeView& tree = session.domain.tree;
  const std::string wanted = base::upper(text);
  for (TreeNode* next = node == nullptr ? tree.first() : tree.next(*node); next != nullptr;
       next = tree.next(*next)) {
    if (next->image == "USER" && base::upper(next->text).find(wanted) != base::npos)
      return next;
  }
  return nullptr;
}

void Find_NT_User(Session& session) {
  const std::string wanted = session.platform.dialogs.InputBox("Enter Name to find", "Find User");
  if (wanted.empty())
    return;
  TreeNode* found = next_user_with(session, nullptr, wanted);
  if (found == nullptr) {
    tell_not_found(session);
    return;
  }
  for (; found != nullptr; found = next_user_with(session, found, wanted)) {
    select_node(session, *found);
    show_user_details(session, *found);
    if (session.platform.dialogs.MsgBox("Continue Search ?", Buttons::kYesNo, Icon::kQuestion, "Search") !=
        Answer::kYes)
      return;
  }
  session.status.panel1 = "No more users found.";
}

void frmFindW2KUser_Load(Session& session) {
  session.find_user.ListView1.clear();
  session.find_user.Label2.caption = std::string();
  session.find_user.btnSelectuser.enabled = false;
}

void btnGo_Click(Session& session) {
  session::frmFindW2KUser& window = session.find_user;
  frmFindW2KUser_Load(session);
  window.Label2.caption = "Searching for user...";
  session.platform.dialogs.DoEvents();
  std::string reason;
  if (!Find_AD_Users(session, window.txtFind.text.get(), &reason)) {
    window.Label2.caption = std::string();
    session.platform.dialogs.MsgBox(
        "Error Searching AD for users." + (reason.empty() ? std::string() : "\r\n\r\n" + reason),
        Buttons::kOk, Icon::kExclamation, "Search Error");
    return;
  }
  const std::size_t count = window.ListView1.size();
  if (count == 0) {
    window.Label2.caption = "No user found";
    return;
  }
  window.Label2.caption = count == 1 ? "1 user found" : std::to_string(count) + " users found";
  window.ListView1.select(&window.ListView1.at(0));
  window.btnSelectuser.enabled = true;
}

bool Find_AD_Users(Session& session, std::string_view text, std::string* reason) {
  if (session.domain.tree.first() == nullptr)
    return false;
  controls::ListView& list = session.find_user.ListView1;
  const controls::DrawingOff off(list);
  const session::Hourglass hourglass(session.form1);
  base::Trap trap;
  const bool asked = trap([&] { add_found_users(session, text); });
  if (!asked && reason != nullptr)
    *reason = base::in_words(trap.number(), trap.description());
  return asked;
}

bool btnSelectuser_Click(Session& session) {
  session::frmFindW2KUser& window = session.find_user;
  const controls::ListRow* const row = window.ListView1.selected();
  if (row == nullptr)
    return false;
  window.Label2.caption = "Locating user in treeview please wait.";
  session.status.panel1 = "Retrieving User data...";
  session.platform.dialogs.DoEvents();
  TreeNode* const node = reach_user(session, row->key);
  window.Label2.caption = std::string();
  session.status.panel1 = "Ready.";
  if (node == nullptr) {
    tell_not_found(session);
    return false;
  }
  select_node(session, *node);
  return true;
}

}  // namespace twk::directory
