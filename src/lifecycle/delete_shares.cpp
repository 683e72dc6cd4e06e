#include "base/errors.hpp"
#include "base/text.hpp"
#include "creation/paths.hpp"
#include "lifecycle/account_log.hpp"
#include "lifecycle/delete_run.hpp"
#include "lifecycle/dir_shr_rename.hpp"
#include "lifecycle/file_operation.hpp"

namespace twk::lifecycle {
namespace {

using session::Session;

struct FolderTexts {
  std::string_view server;
  std::string_view share;
  std::string_view status;
  std::string_view failure;
  std::string_view waiting;
  std::string_view found;
};

constexpr FolderTexts kHome{"From Server: ",
                            "Home Share: ",
                            "Unable to get Home Share for ",
                            "Unable to find Home Share: ",
                            "Please wait Locating Home Share...",
                            "Home Dir Path :"};
constexpr FolderTexts kProfile{"Profile Server: ",
                               "Profile ShareName: ",
                               "Unable to get Profile Share for ",
                               "Unable to find Profile Share: ",
                               "Please wait Locating Profile Share...",
                               "Profile Dir Path :"};

void locate(DeleteRun& run, UserFolder& folder, const FolderTexts& texts) {
  Session& session = run.session;
  folder.tail_position = tail_position(folder.path);
  folder.server = creation::Get_Server_Name(folder.path);
  folder.share = creation::Get_Share_Name(folder.path);
  session.log.line(std::string(texts.server) + folder.server);
  session.log.line(std::string(texts.share) + folder.share);
  prepare_failure(session, std::string(texts.status) + run.display_name,
                  std::string(texts.failure) + folder.share);
  base::Trap unknown;
  if (session.form1.chkAdmin_Shares.on()) {
    unknown([&] { folder.unc = Admin_Path_Of(session, folder.path, false); });
  } else {
    session.multi_user.Label3.caption = std::string(texts.waiting);
    unknown([&] { folder.unc = Locate_Share_Point(session, folder.server, folder.share); });
  }
  if (folder.unc.empty()) {
    run.Success = false;
    session.log.line(session.Error_Log_Text);
    session.platform.dialogs.beep();
  }
  session.log.line(std::string(texts.found) + folder.unc);
}

bool is_mandatory(std::string_view path) {
  return base::upper(path).ends_with(".MAN");
}

void guard_profile(DeleteRun& run) {
  const std::string& path = run.profile.path;
  if (Check_Path_Word(run.session, path, "NETLOGON", "Cannot Delete Netlogon Directory."))
    run.DeleteProfile = false;
  if (Check_Path_Word(run.session, path, "%LOGONSERVER%", "Cannot Delete From %Netlogon% Server."))
    run.DeleteProfile = false;
  if (is_mandatory(path)) {
    run.session.platform.dialogs.beep();
    run.session.log.line("Unable to Delete Mandatory Profiles.");
    run.DeleteProfile = false;
  }
}

/// The line is printed whether or not the server has the share.
void remove_share(DeleteRun& run, const std::string& server, const std::string& share,
                  std::string_view label) {
  bool kept = false;
  base::Trap ignored;
  ignored([&] { kept = !delete_share(run.session, server, share); });
  if (kept)
    run.Success = false;
  else
    run.session.log.line(std::string(label) + share);
}

}  // namespace

void delete_shares(DeleteRun& run) {
  UserFolder& home = run.home;
  UserFolder& profile = run.profile;
  // One server for both, as the profile is looked at last: a home share of another server stays.
  std::string server;
  if (home.path.starts_with('\\')) {
    locate(run, home, kHome);
    server = home.server;
  }
  guard_profile(run);
  if (run.DeleteProfile && profile.path.starts_with('\\')) {
    locate(run, profile, kProfile);
    server = profile.server;
  }
  const bool same_share = base::equals_fold(profile.share, home.share);
  const bool same_server = base::equals_fold(server, home.server);
  if (same_share && same_server) {
    run.session.log.line("Home Share and Profile Share are the Same...");
    if (run.DeleteProfile && !home.share.empty())
      remove_share(run, server, home.share, "Deleted Common Share: ");
    return;
  }
  if (home.tail_position == 0 && !home.share.empty())
    remove_share(run, server, home.share, "Deleted Share: ");
  if (profile.tail_position == 0 && run.DeleteProfile && !profile.share.empty())
    remove_share(run, server, profile.share, "Deleted Share: ");
}

}  // namespace twk::lifecycle
