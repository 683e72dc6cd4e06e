#include "directory/find_user.hpp"

#include "base/errors.hpp"
#include "base/text.hpp"
#include "directory/names.hpp"
#include "directory/operations.hpp"
#include "directory/tree_path.hpp"
#include "platform/ldap_text.hpp"
#include "session/later_commands.hpp"
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

void show_node(Session& session, TreeNode& node) {
  controls::TreeView& tree = session.form1.TreeView1;
  session.form1.StatusBar1.panel1 = "Retrieving User data...";
  tree.select(&node);
  tree.ensure_visible(node);
  session::tell_node_chosen(session, node);
  session.form1.StatusBar1.panel1 = "Ready.";
}

void tell_not_found(Session& session) {
  session.platform.dialogs.MsgBox("User not found.", Buttons::kOk, Icon::kInformation, "Search");
}

void add_found_users(Session& session, std::string_view text) {
  const TreeNode* const root = session.form1.TreeView1.first();
  const auto rows = run_query(session, "<LDAP://" + session.DomainName + "/" + root->key +
                                           ">;(&(objectCategory=Person)(objectClass=User)(cn=*" +
                                           filter_text(text) + "*));adsPath,name;subtree");
  for (; !rows->at_eof(); rows->MoveNext()) {
    const std::string key = rows->field(0).text();
    session.find_user.ListView1.add(key, rows->field(1).text(), "USER", {std::string(name_in_path(key))});
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

void Find_NT_User(Session& session) {
  controls::TreeView& tree = session.form1.TreeView1;
  const std::string wanted =
      base::upper(session.platform.dialogs.InputBox("Enter Name to find", "Find User"));
  if (wanted.empty())
    return;
  bool found = false;
  for (TreeNode* node = tree.first(); node != nullptr; node = tree.next(*node)) {
    if (node->image != "USER" || base::upper(node->text).find(wanted) == base::npos)
      continue;
    found = true;
    show_node(session, *node);
    if (session.platform.dialogs.MsgBox("Continue Search ?", Buttons::kYesNo, Icon::kQuestion, "Search") !=
        Answer::kYes)
      return;
  }
  if (found)
    session.form1.StatusBar1.panel1 = "No more users found.";
  else
    tell_not_found(session);
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
  if (!Find_AD_Users(session, window.txtFind.text.get())) {
    window.Label2.caption = std::string();
    session.platform.dialogs.MsgBox("Error Searching AD for users.", Buttons::kOk, Icon::kExclamation,
                                    "Search Error");
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

bool Find_AD_Users(Session& session, std::string_view text) {
  if (session.form1.TreeView1.first() == nullptr)
    return false;
  controls::ListView& list = session.find_user.ListView1;
  list.set_drawing(false);
  session.form1.mouse_pointer = 11;
  base::Trap trap;
  const bool asked = trap([&] { add_found_users(session, text); });
  session.form1.mouse_pointer = 0;
  list.set_drawing(true);
  return asked;
}

bool btnSelectuser_Click(Session& session) {
  session::frmFindW2KUser& window = session.find_user;
  const controls::ListRow* const row = window.ListView1.selected();
  if (row == nullptr)
    return false;
  window.Label2.caption = "Locating user in treeview please wait.";
  session.platform.dialogs.DoEvents();
  TreeNode* const node = reach_user(session, row->key);
  window.Label2.caption = std::string();
  if (node == nullptr) {
    tell_not_found(session);
    return false;
  }
  show_node(session, *node);
  return true;
}

}  // namespace twk::directory
