#include "lifecycle/popup_commands.hpp"

#include "base/errors.hpp"
#include "base/text.hpp"
#include "controls/tree_view.hpp"
#include "directory/names.hpp"
#include "directory/operations.hpp"
#include "format/passwords.hpp"
#include "lifecycle/rename/dir_shr_rename.hpp"
#include "lifecycle/rename/rename_nt.hpp"
#include "lifecycle/rename/rename_user.hpp"
#include "lifecycle/trees/file_operation.hpp"
#include "lifecycle/trees/folder_use.hpp"
#include "platform/adsi.hpp"
#include "platform/ldap_text.hpp"
#include "session/account_windows.hpp"
#include "session/form1.hpp"
#include "session/log_tab.hpp"
#include "session/session.hpp"

namespace twk::lifecycle {
namespace {

using session::Session;

void show(Session& session, const std::string& text) {
  session.status.panel1 = text;
}

bool beep_and_show(Session& session, const std::string& text) {
  session.platform.dialogs.beep();
  show(session, text);
  return false;
}

/// An account of the tree, and its profile.
struct AccountProfile {
  std::string account;
  std::string path;
};

AccountProfile read_profile(Session& session, const controls::TreeNode& node) {
  platform::DirectoryService& directory = session.platform.directory;
  if (!session::is_active_directory(session)) {
    const platform::ObjectPtr user =
        directory.GetObject(directory::winnt_path(session))->GetObject("user", node.text);
    return {node.text, std::string(base::trim(platform::User(user).Profile()))};
  }
  const platform::ObjectPtr user = directory.GetObject(node.key);
  return {user->Get("samAccountName").text(), std::string(base::trim(platform::User(user).Profile()))};
}

/// Why a profile is not touched; empty when it may be.
std::string refusal_of_profile(const std::string& path) {
  if (names_mandatory_profile(path))
    return "Unable to Delete Mandatory Profiles";
  if (base::find_fold(path, "NETLOGON") != base::npos)
    return "Unable to Delete Profile from Netlogon Directory...";
  if (base::find_fold(path, "%LOGONSERVER%") != base::npos)
    return "Unable to Delete Profile from %LOGONSERVER% ...";
  if (path.empty())
    return "User Does not have a profile Path Set...";
  return {};
}

/// The name of the folder that a workstation keeps a profile in: the user's common name where there is one.
std::string profile_folder(const Session& session, const controls::TreeNode& node) {
  if (session.runs.WKS_Is_NT40 || !session::is_active_directory(session))
    return node.text;
  const std::string_view name = directory::name_in_path(node.key);
  return name.empty() ? node.text : platform::plain_name(directory::relative_name(name));
}

/// Empty when it cannot be read; no folder then counts as the account's.
std::string account_name(Session& session, const controls::TreeNode& node) {
  if (!session::is_active_directory(session))
    return node.text;
  std::string name;
  base::Trap unreadable;
  unreadable([&] { name = session.platform.directory.GetObject(node.key)->Get("samAccountName").text(); });
  return name;
}

/// A part of a path that names exactly one folder.
bool is_one_name(std::string_view name) {
  return name.find_first_not_of(" .") != base::npos && name.find_first_of("\\/:*?\"<>|") == base::npos &&
         !base::find_control_character(name);
}

/// The status bar shows how it ended.
bool delete_folder(Session& session, const AccountProfile& profile, const std::string& done) {
  const std::string& path = profile.path;
  const KnownFolders known(session);
  show(session, "Deleting " + path + " ...");
  session.import.ImportStopped = false;
  session.log.begin_block();
  session.log.line("Deleting " + path);
  const bool deleted = File_Operation(session, path, {}, FileWork::kDelete, {.account = profile.account});
  session.log.line((deleted ? "Deleted Dir: " : "Error Deleting: ") + path);
  session.log.close();
  if (deleted)
    show(session, done);
  else if (session.status.panel1.get().starts_with("Deleting "))
    show(session, "Ready.");  // declined or stopped; a fault stays shown
  return deleted;
}

bool set_password(Session& session, const controls::TreeNode& node, const std::string& password,
                  std::string& reason) {
  return session::is_active_directory(session)
             ? directory::Reset_AD_Password(session, password, node.key, &reason)
             : directory::Reset_NT_Password(session, password, node.text, &reason);
}

}  // namespace

bool Reset_Password(Session& session, const controls::TreeNode& node) {
  if (session.form1.Confirm_Resets.on() &&
      session.platform.dialogs.MsgBox("Reset Password for " + node.text, platform::Buttons::kYesNo,
                                      platform::Icon::kQuestion, "Reset Password") != platform::Answer::kYes)
    return false;
  session.log.begin_block();
  const std::string password = format::reset_user_password_text(session, node.text);
  std::string reason;
  const bool done = set_password(session, node, password, reason);
  if (done) {
    session::LOG_TAB(session, session::kGreen, " Password Reset For " + node.text);
    session.log.line("Password Reset for: " + node.text +
                     (session::is_debug(session) ? " - " + password : std::string()));
    show(session, "Password for " + node.text + " has Been Reset.");
  } else {
    show(session, "Error ReSetting Password... " + reason);
    session.log.reason("Error ReSetting Password for: " + node.text, reason);
    session.platform.dialogs.beep();
  }
  session.log.close();
  return done;
}

void Rename_User(Session& session) {
  if (session::is_active_directory(session))
    show_rename_user(session);
  else
    show_rename_nt(session);
}

bool Delete_Server_Profile(Session& session, const controls::TreeNode& node) {
  AccountProfile profile;
  base::Trap trap;
  if (!trap([&] { profile = read_profile(session, node); }))
    return beep_and_show(session, "Unable to read the user: " + trap.description());
  const std::string& path = profile.path;
  const std::string refusal = refusal_of_profile(path);
  if (!refusal.empty())
    return beep_and_show(session, refusal);
  if (!session.platform.files.is_directory(path + "\\")) {
    look_up_temp(session);
    return beep_and_show(session, "Profile Not found " + path);
  }
  const bool deleted = delete_folder(session, profile, "Profile Deleted.");
  look_up_temp(session);
  return deleted;
}

bool Delete_WKS_Profile(Session& session, const controls::TreeNode& node) {
  session.runs.WKS_Name.clear();
  session.wks_profile.WKS_NAME1.text = std::string();
  controls::choose(session.wks_profile.W2K, session.wks_profile.NT40, !session.runs.WKS_Is_NT40);
  session.platform.dialogs.show_modal("WKS_PROFILE");
  return delete_wks_profile(session, node);
}

bool delete_wks_profile(Session& session, const controls::TreeNode& node) {
  std::string workstation(base::trim(session.runs.WKS_Name));
  if (workstation.empty())
    return false;
  if (workstation.starts_with("\\\\"))
    workstation.erase(0, 2);
  const std::string folder = profile_folder(session, node);
  if (!is_one_name(workstation) || !is_one_name(folder))
    return beep_and_show(session,
                         "\"" + workstation + "\" and \"" + folder + "\" do not make the path of a profile");
  const std::string path =
      "\\\\" + workstation +
      (session.runs.WKS_Is_NT40 ? "\\admin$\\profiles\\" : "\\c$\\Documents and Settings\\") + folder;
  show(session, "Deleting " + path + " ...");
  if (!Dir_Exists(session, path))
    return beep_and_show(session, "Unable to find " + path + " ...");
  return delete_folder(session, {account_name(session, node), path}, "Ready.");
}

void WKS_PROFILE_OKButton_Click(Session& session) {
  session.runs.WKS_Name = session.wks_profile.WKS_NAME1.text;
  session.runs.WKS_Is_NT40 = session.wks_profile.NT40.value;
}

void WKS_PROFILE_CancelButton_Click(Session& session) {
  session.runs.WKS_Name.clear();
}

}  // namespace twk::lifecycle
