#include "windows/main_window.hpp"

#include <algorithm>
#include <array>

#include "directory/tree/create_ou.hpp"
#include "directory/tree/tree.hpp"
#include "session/log_tab.hpp"
#include "stores/backup.hpp"
#include "windows/account/details_tab.hpp"
#include "windows/account/popup_commands.hpp"
#include "windows/account/unsaved.hpp"
#include "windows/compact_database.hpp"
#include "windows/custom_commands.hpp"
#include "windows/editors/custom_properties.hpp"
#include "windows/groups/groups_window.hpp"
#include "windows/import.hpp"
#include "windows/log_window.hpp"
#include "windows/manage_ou.hpp"
#include "windows/multi_user/multi_user_window.hpp"
#include "windows/refresh.hpp"
#include "windows/state/desktop.hpp"
#include "windows/state/form1.hpp"
#include "windows/state/hourglass.hpp"
#include "windows/state/multi_user.hpp"
#include "windows/state/new_user.hpp"
#include "windows/state/tree_commands.hpp"
#include "windows/tree/ad_options.hpp"
#include "windows/tree/find_user.hpp"
#include "windows/tree/tree_popup.hpp"
#include "windows/unsaved_edits.hpp"

namespace twk::windows {
namespace {

void clear_new_user(Desktop& session) {
  Form1& form = session.form1;
  for (controls::TextBox* const name : {&form.strFirst, &form.StrMiddle, &form.strLast, &form.UserID_Box})
    name->text = std::string();
  session.new_user.made.clear();
  session.new_user.formed.clear();
  session.new_user.card_visible = false;
  for (controls::Label* const light : {&form.Createdirs, &form.Sharedirs, &form.Security, &form.UserAccount,
                                       &form.MailAccount, &form.run, &form.progress}) {
    light->caption = std::string();
    light->colour = 0;
  }
  form.ProgressBar1.value = 0;
  form.SSTab1 = tab::kNewUser;
  form.StatusBar1.panel1 = "Ready.";
  form.SetFocus.emit("strFirst");
}

/// All users that are selected in the tree together with this one.
std::vector<std::string> users_meant(Desktop& session, const controls::TreeNode& node) {
  choose_users(session, node);
  return session.tree_commands.chosen;
}

void refresh_if_wanted(Desktop& session) {
  if (may_leave_all(session))
    Refresh(session);
}

}  // namespace

void mnuFile_Click(Desktop& session, int index) {
  switch (index) {
    case 1:
      Import_Command(session);
      break;
    case 2:
      View_Log_Click(session);
      break;
    case 3:
      stores::Backup_Databases(session);
      break;
    case 5:
      Form_Unload(session);
      break;
    default:
      break;
  }
}

void mnuOption_Click(Desktop& session, int index) {
  switch (index) {
    case 2:
      windows::frmADOptions_Load(session);
      session.platform.dialogs.show_modal("frmADOptions");
      break;
    case 5:
      if (session.ManagedOU.empty() || may_leave_all(session))
        windows::Manage_OU(session);
      break;
    case 6:
      windows::Compact_Database(session);
      break;
    case kCustomProperties:
      windows::show_custom(session);
      break;
    case 1:
      windows::show_multi_user(session);
      break;
    case 4:
      windows::Groupsfrm_Show(session);
      break;
    default:
      break;
  }
}

void mnupopup_Click(Desktop& session, int index) {
  controls::TreeNode* const node = session.form1.TreeView1.selected();
  if (node == nullptr)
    return;
  constexpr std::array kForUsers = {2, 4, 5, 6, 8, 9};
  if (node->image != "USER" && std::find(kForUsers.begin(), kForUsers.end(), index) != kForUsers.end())
    return;
  switch (index) {
    case 0:
      if (may_leave_details(session))
        show_user_details(session, *node);
      break;
    case 2:
      windows::Reset_Password(session, *node);
      break;
    case 4:
      windows::show_for_users(session, users_meant(session, *node), multi_tab::kDelete);
      break;
    case 5:
      windows::show_for_users(session, users_meant(session, *node), multi_tab::kMove);
      break;
    case 6:
      windows::Rename_User(session);
      break;
    case 8:
      windows::Delete_Server_Profile(session, *node);
      break;
    case 9:
      windows::Delete_WKS_Profile(session, *node);
      break;
    case 10:
      directory::Create_OU(session);
      break;
    case 13:
    case 14:
      run_custom_command(session, index, *node);
      break;
    default:
      break;
  }
}

void Toolbar1_ButtonClick(Desktop& session, std::string_view key) {
  if (key == "NewUser")
    clear_new_user(session);
  else if (key == "Refresh")
    refresh_if_wanted(session);
  else if (key == "FIND")
    windows::Find_User(session);
  else if (key == "Help")
    session.form1.ShowHelp.emit("Main");
  else if (key == "Vlog")
    mnuFile_Click(session, 2);
  else if (key == "IMPORTU")
    mnuFile_Click(session, 1);
  else if (key == "Exit1")
    mnuFile_Click(session, 5);
  else if (key == "MultiUser")
    mnuOption_Click(session, 1);
  else if (key == "Groups")
    mnuOption_Click(session, 4);
  else if (key == "deleteuser")
    mnupopup_Click(session, 4);
}

void SSTab1_Click(Desktop& session) {
  session.form1.StatusBar1.panel1 = session.form1.SSTab1 == tab::kSite ? "Click on a site to edit" : "Ready.";
}

void TreeView1_NodeClick(Desktop& session, controls::TreeNode& node) {
  if (node.image != "USER" && !may_leave_details(session)) {
    controls::TreeView& tree = session.form1.TreeView1;
    if (controls::TreeNode* const shown = tree.find(session.form1.USERID_W2K.text.get()))
      tree.select(shown);
    return;
  }
  node_chosen(session, node);
}

void TreeView1_Expand(Desktop& session, controls::TreeNode& node) {
  const Hourglass hourglass(session.form1);
  directory::TreeView1_Expand(session, node);
}

void TreeView1_DblClick(Desktop& session, controls::TreeNode& node) {
  if (node.image == "USER") {
    if (may_leave_details(session))
      show_user_details(session, node);
  } else if (node.expanded) {
    session.form1.TreeView1.set_expanded(node, false);
  } else {
    TreeView1_Expand(session, node);
  }
}

void Form_Unload(Desktop& session) {
  session.form1.ended = true;
}

}  // namespace twk::windows
