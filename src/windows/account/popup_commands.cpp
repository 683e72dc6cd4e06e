#include "windows/account/popup_commands.hpp"

#include "lifecycle/account/password_reset.hpp"
#include "lifecycle/deletion/delete_profile.hpp"
#include "windows/account/account_view.hpp"
#include "windows/account/rename_nt.hpp"
#include "windows/account/rename_user.hpp"
#include "windows/state/account_windows.hpp"
#include "windows/state/desktop.hpp"
#include "windows/state/form1.hpp"

namespace twk::windows {

bool Reset_Password(Desktop& session, const controls::TreeNode& node) {
  return lifecycle::reset_password(session, {node.text, node.key, session.form1.Confirm_Resets.on(),
                                             session.form1.defaultpassword.text})
      .done;
}

void Rename_User(Desktop& session) {
  if (session::is_active_directory(session))
    show_rename_user(session);
  else
    show_rename_nt(session);
}

bool Delete_Server_Profile(Desktop& session, const controls::TreeNode& node) {
  AccountView view(session);
  return lifecycle::delete_server_profile(session, {node.text, node.key, {}}, view);
}

bool Delete_WKS_Profile(Desktop& session, const controls::TreeNode& node) {
  WKS_PROFILE& window = session.wks_profile;
  window.WKS_Name.clear();
  window.WKS_NAME1.text = std::string();
  controls::choose(window.W2K, window.NT40, !window.WKS_Is_NT40);
  session.platform.dialogs.show_modal("WKS_PROFILE");
  AccountView view(session);
  return lifecycle::delete_workstation_profile(session, {node.text, node.key, {}},
                                               {window.WKS_Name, window.WKS_Is_NT40}, view);
}

void WKS_PROFILE_OKButton_Click(Desktop& session) {
  session.wks_profile.WKS_Name = session.wks_profile.WKS_NAME1.text;
  session.wks_profile.WKS_Is_NT40 = session.wks_profile.NT40.value;
}

void WKS_PROFILE_CancelButton_Click(Desktop& session) {
  session.wks_profile.WKS_Name.clear();
}

}  // namespace twk::windows
