#include "windows/manage_ou.hpp"

#include "directory/managed_ou.hpp"
#include "windows/refresh.hpp"
#include "windows/state/desktop.hpp"
#include "windows/state/directory_windows.hpp"
#include "windows/state/form1.hpp"

namespace twk::windows {

void Manage_OU(Desktop& session) {
  const controls::TreeNode* const node = session.form1.TreeView1.selected();
  if (node == nullptr || node->image != "OU") {
    session.platform.dialogs.MsgBox(
        "To manage a single OU, by only allowing TWK to display users in the selected OU and sub OU's\r\n"
        "select the OU to manage in the treeview and reselect this option.",
        platform::Buttons::kOk, platform::Icon::kInformation, "Manage OU");
    return;
  }
  if (!session.ManagedOU.empty()) {
    Form1& form = session.form1;
    form.DomName.enabled = false;
    form.mnuOption[5].enabled = false;
    directory::lift_limit(session);
    windows::Refresh(session);
    form.DomName.enabled = true;
    return;
  }
  session.select_ou.OU.caption = "Manage this OU: " + node->text;
  session.select_ou.SUBOU.value = session.ManageSubOUs ? 1 : 0;
  session.platform.dialogs.show_modal("Select_OU");
}

void Select_OU_OK_Click(Desktop& session) {
  const controls::TreeNode* const node = session.form1.TreeView1.selected();
  if (node == nullptr)
    return;
  session.form1.DomName.enabled = false;
  session.form1.mnuOption[5].enabled = false;
  const std::uint32_t hive =
      session.select_ou.REG_KEY.index == 1 ? platform::kHiveLocalMachine : platform::kHiveCurrentUser;
  directory::limit_to_ou(session, node->key, session.select_ou.SUBOU.on(), hive);
  session.form1.StatusBar1.panel1 = "The limit to " + node->text + " takes effect with the next Refresh.";
}

}  // namespace twk::windows
