#include "lifecycle/deletion/delete_profile.hpp"

#include "base/errors.hpp"
#include "base/text.hpp"
#include "directory/names.hpp"
#include "directory/operations.hpp"
#include "lifecycle/rename/dir_shr_rename.hpp"
#include "lifecycle/trees/file_operation.hpp"
#include "lifecycle/trees/folder_use.hpp"
#include "platform/adsi.hpp"
#include "platform/ldap_text.hpp"
#include "session/run_scope.hpp"
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

AccountProfile read_profile(Session& session, const ProfileOrder& order) {
  platform::DirectoryService& directory = session.platform.directory;
  if (!session::is_active_directory(session)) {
    const platform::ObjectPtr user =
        directory.GetObject(directory::winnt_path(session))->GetObject("user", order.name);
    return {order.name, std::string(base::trim(platform::User(user).Profile()))};
  }
  const platform::ObjectPtr user = directory.GetObject(order.key);
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
std::string profile_folder(const Session& session, const ProfileOrder& order, bool is_nt40) {
  if (is_nt40 || !session::is_active_directory(session))
    return order.name;
  const std::string_view name = directory::name_in_path(order.key);
  return name.empty() ? order.name : platform::plain_name(directory::relative_name(name));
}

/// Empty when it cannot be read; no folder then counts as the account's.
std::string account_name(Session& session, const ProfileOrder& order) {
  if (!session::is_active_directory(session))
    return order.name;
  std::string name;
  base::Trap unreadable;
  unreadable([&] { name = session.platform.directory.GetObject(order.key)->Get("samAccountName").text(); });
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

}  // namespace

bool delete_server_profile(Session& session, const ProfileOrder& order, session::RunView& view) {
  const session::RunScope scope(session, order.terms, view);
  AccountProfile profile;
  base::Trap trap;
  if (!trap([&] { profile = read_profile(session, order); }))
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

bool delete_workstation_profile(Session& session, const ProfileOrder& order, const ProfileWorkstation& on,
                                session::RunView& view) {
  const session::RunScope scope(session, order.terms, view);
  std::string workstation(base::trim(on.name));
  if (workstation.empty())
    return false;
  if (workstation.starts_with("\\\\"))
    workstation.erase(0, 2);
  const std::string folder = profile_folder(session, order, on.is_nt40);
  if (!is_one_name(workstation) || !is_one_name(folder))
    return beep_and_show(session,
                         "\"" + workstation + "\" and \"" + folder + "\" do not make the path of a profile");
  const std::string path = "\\\\" + workstation +
                           (on.is_nt40 ? "\\admin$\\profiles\\" : "\\c$\\Documents and Settings\\") + folder;
  show(session, "Deleting " + path + " ...");
  if (!Dir_Exists(session, path))
    return beep_and_show(session, "Unable to find " + path + " ...");
  return delete_folder(session, {account_name(session, order), path}, "Ready.");
}

}  // namespace twk::lifecycle
