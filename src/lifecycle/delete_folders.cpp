#include "base/errors.hpp"
#include "base/text.hpp"
#include "lifecycle/delete_run.hpp"
#include "lifecycle/dir_shr_rename.hpp"
#include "lifecycle/file_operation.hpp"
#include "lifecycle/tree_path.hpp"
#include "resources/account_lookup.hpp"
#include "resources/file_permission.hpp"

namespace twk::lifecycle {
namespace {

using session::Session;

constexpr const char* kAdministrators = "Administrators";

/// Owner first, without a look at the list: it may be closed to everybody.
void take_tree(Session& session, const std::string& path) {
  std::string server = resources::fallback_server(session);
  base::Trap trap;
  trap([&] {
    const TreePath own = require_own_tree(session, path, {});
    server = own.server;
    if (session.runs.rehearse)
      return session.runs.rehearse("Take ownership of " + own.text() + " and all below it");
    resources::take_owner(session, server, own.text(), kAdministrators);
    resources::write_file_permission(session, server, own.text(),
                                     {.account = kAdministrators, .replaceAll = true, .recurse = true});
  });
  if (trap.number() != 0)
    session.log.line("Taking ownership failed: " + trap.description());
}

void take_ownership(Session& session, const std::string& path, std::string_view question) {
  const auto wanted = [&] {
    return session.multi_user.No_Prompting.on() ||
           session.platform.dialogs.MsgBox(std::string(question) + "\r\n" + path, platform::Buttons::kYesNo,
                                           platform::Icon::kQuestion,
                                           "Taking Ownership:") == platform::Answer::kYes;
  };
  if (!session.multi_user.Del_Permissions.on() || !wanted())
    return;
  session.log.line("Setting Administrators permissions on " + path + " and all sub directories");
  take_tree(session, path);
}

void delete_folder(DeleteRun& run, const std::string& path, std::string_view question) {
  Session& session = run.session;
  take_ownership(session, path, question);
  session.multi_user.Label3.caption = "Deleting " + path;
  const bool deleted = File_Operation(session, path, {}, FileWork::kDelete);
  session.log.line((deleted ? "Deleted Dir: " : "Error Deleting: ") + path);
  if (!deleted)
    run.Success = false;
}

/// A tail of backslashes alone would mean the folder of the share, which is not the user's.
bool has_empty_tail(DeleteRun& run, const UserFolder& folder) {
  if (folder.tail_position == 0 || tail_of(folder.path).find_first_not_of("\\ ") != base::npos)
    return false;
  run.session.log.line("Error Deleting: \"" + folder.path + "\" names no folder below its share");
  run.Success = false;
  return true;
}

/// In a WinNT domain the folder that is named after the user goes, with what is above the profile in it.
std::string cut_at_user(const DeleteRun& run, const std::string& path) {
  if (session::is_active_directory(run.session) || !run.session.form1.Profile_Delete_Name.on())
    return path;
  // Of an account that is kept no folder is named.
  return run.DeletedName.empty() ? std::string() : cut_at_folder_of(path, run.DeletedName);
}

}  // namespace

void delete_folders(DeleteRun& run) {
  const UserFolder& home = run.home;
  const UserFolder& profile = run.profile;
  if (!home.unc.empty() && !has_empty_tail(run, home))
    delete_folder(run, home.unc + tail_of(home.path), "Taking Ownership and changing permissions on: ");
  const bool own_profile = run.DeleteProfile && !base::equals_fold(profile.share, home.share) &&
                           !profile.unc.empty() && !has_empty_tail(run, profile);
  if (own_profile)
    delete_folder(run, cut_at_user(run, profile.unc + tail_of(profile.path)),
                  "Taking Ownership and changing Permissions on: ");
}

}  // namespace twk::lifecycle
