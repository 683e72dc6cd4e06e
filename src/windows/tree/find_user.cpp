#include "windows/tree/find_user.hpp"

#include "base/error_words.hpp"
#include "base/errors.hpp"
#include "controls/drawing_off.hpp"
#include "directory/tree/find_user.hpp"
#include "directory/tree/tree_path.hpp"
#include "windows/account/details_tab.hpp"
#include "windows/account/unsaved.hpp"
#include "windows/state/desktop.hpp"
#include "windows/state/directory_windows.hpp"
#include "windows/state/form1.hpp"
#include "windows/state/hourglass.hpp"

namespace twk::windows {
namespace {

using controls::TreeNode;
using platform::Answer;
using platform::Buttons;
using platform::Icon;

void select_node(Desktop& session, TreeNode& node) {
  session.form1.TreeView1.select(&node);
  session.form1.TreeView1.ensure_visible(node);
}

void tell_not_found(Desktop& session) {
  session.platform.dialogs.MsgBox("User not found.", Buttons::kOk, Icon::kInformation, "Search");
}

void list_found(Desktop& session) {
  controls::ListView& list = session.find_user.ListView1;
  const controls::DrawingOff off(list);
  const Hourglass hourglass(session.form1);
  for (const directory::FoundUser& user :
       directory::find_users(session, session.find_user.txtFind.text.get(), session.find_user.unit)) {
    std::vector<std::string> columns = user.columns.texts;
    columns.insert(columns.begin(), user.place);
    list.add(user.key, user.name, "USER", columns).marks = user.columns.marks;
  }
}

}  // namespace

void Find_User(Desktop& session) {
  if (!session::is_active_directory(session)) {
    Find_NT_User(session);
    return;
  }
  find_user_in(session, {});
}

void find_user_in(Desktop& session, const std::string& unit) {
  session.find_user.unit = unit;
  frmFindW2KUser_Load(session);
  session.platform.dialogs.show_modal("frmFindW2KUser");
}

void Find_NT_User(Desktop& session) {
  const std::string wanted = session.platform.dialogs.InputBox("Enter Name to find", "Find User");
  if (wanted.empty() || !may_leave_details(session))
    return;
  TreeNode* found = directory::next_user_with(session, nullptr, wanted);
  if (found == nullptr) {
    tell_not_found(session);
    return;
  }
  for (; found != nullptr; found = directory::next_user_with(session, found, wanted)) {
    select_node(session, *found);
    show_user_details(session, *found);
    if (session.platform.dialogs.MsgBox("Continue Search ?", Buttons::kYesNo, Icon::kQuestion, "Search") !=
        Answer::kYes)
      return;
  }
  session.status.panel1 = "No more users found.";
}

void frmFindW2KUser_Load(Desktop& session) {
  session.find_user.ListView1.clear();
  session.find_user.Label2.caption = std::string();
  session.find_user.btnSelectuser.enabled = false;
}

void find_typed_user(Desktop& session) {
  frmFindW2KUser& window = session.find_user;
  frmFindW2KUser_Load(session);
  window.Label2.caption = "Searching for user...";
  session.platform.dialogs.DoEvents();
  base::Trap trap;
  if (!trap([&] { list_found(session); })) {
    window.Label2.caption = std::string();
    session.platform.dialogs.MsgBox(
        "Error Searching AD for users.\r\n\r\n" + base::in_words(trap.number(), trap.description()),
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

bool btnSelectuser_Click(Desktop& session) {
  frmFindW2KUser& window = session.find_user;
  const controls::ListRow* const row = window.ListView1.selected();
  if (row == nullptr)
    return false;
  window.Label2.caption = "Locating user in treeview please wait.";
  session.status.panel1 = "Retrieving User data...";
  session.platform.dialogs.DoEvents();
  TreeNode* const node = directory::reach_user(session, row->key);
  window.Label2.caption = std::string();
  session.status.panel1 = "Ready.";
  if (node == nullptr) {
    tell_not_found(session);
    return false;
  }
  select_node(session, *node);
  return true;
}

}  // namespace twk::windows
