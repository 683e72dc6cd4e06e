#include <algorithm>
#include <optional>

#include "base/errors.hpp"
#include "base/text.hpp"
#include "creation/paths.hpp"
#include "lifecycle/account/account_log.hpp"
#include "lifecycle/deletion/delete_run.hpp"
#include "lifecycle/rename/dir_shr_rename.hpp"
#include "lifecycle/trees/file_operation.hpp"
#include "lifecycle/trees/folder_use.hpp"

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
  if (run.order.through_drive_shares) {
    unknown([&] { folder.unc = Admin_Path_Of(session, folder.path, false); });
  } else {
    session.run.view().step(texts.waiting);
    unknown([&] { folder.unc = Locate_Share_Point(session, folder.server, folder.share); });
  }
  if (folder.unc.empty()) {
    run.Success = false;
    session.log.reason(session.Error_Log_Text);
    session.platform.dialogs.beep();
  }
  session.log.line(std::string(texts.found) + folder.unc);
}

void guard_profile(DeleteRun& run) {
  const std::string& path = run.profile.path;
  if (Check_Path_Word(run.session, path, "NETLOGON", "Cannot Delete Netlogon Directory."))
    run.DeleteProfile = false;
  if (Check_Path_Word(run.session, path, "%LOGONSERVER%", "Cannot Delete From %Netlogon% Server."))
    run.DeleteProfile = false;
  if (names_mandatory_profile(path)) {
    run.session.platform.dialogs.beep();
    run.session.log.line("Unable to Delete Mandatory Profiles.");
    run.DeleteProfile = false;
  }
}

/// A common share, possibly above their folders, or the shares that are home and profile. Each on its own
/// server.
void choose_shares(DeleteRun& run) {
  const UserFolder& home = run.home;
  const UserFolder& profile = run.profile;
  const bool home_is_bare = home.tail_position == 0;
  const bool profile_is_bare = profile.tail_position == 0;
  const bool same = base::equals_fold(profile.share, home.share) &&
                    (profile.server.empty() || base::equals_fold(profile.server, home.server));
  if (same) {
    run.session.log.line("Home Share and Profile Share are the Same...");
    if (run.DeleteProfile && !home.share.empty())
      run.shares.push_back(
          {home.server, home.share, "Deleted Common Share: ", home_is_bare || profile_is_bare});
    return;
  }
  if (home_is_bare && !home.share.empty())
    run.shares.push_back({home.server, home.share, "Deleted Share: "});
  if (profile_is_bare && run.DeleteProfile && !profile.share.empty())
    run.shares.push_back({profile.server, profile.share, "Deleted Share: "});
}

std::string first_part(std::string_view path) {
  return path.empty() ? std::string() : parse_tree_path(path).parts.front();
}

/// What a share above the user's folders contains or leads to besides them; empty when it is the user's
/// alone.
std::string other_use(DeleteRun& run, const GoingShare& share) {
  const auto claims = folder_use(run.session)->claims_through(share.server, share.share, run.logon_name);
  if (!claims.empty())
    return "the " + claims.front().what + " of " + claims.front().account;
  for (const platform::FileEntry& entry :
       run.session.platform.files.list("\\\\" + share.server + "\\" + share.share)) {
    if (!base::equals_fold(entry.name, first_part(run.home.path)) &&
        !base::equals_fold(entry.name, first_part(run.profile.path)))
      return entry.name;
  }
  return {};
}

/// A share above the user's folders is removed only when it serves them alone; otherwise it stays, which is
/// not a failure.
void keep_common_share(DeleteRun& run) {
  std::erase_if(run.shares, [&](const GoingShare& share) {
    if (share.is_bare)
      return false;
    const std::string other = other_use(run, share);
    if (!other.empty())
      run.session.log.line("Not deleting share " + share.share + " on " + share.server +
                           ": it leads to others as well: " + other);
    return !other.empty();
  });
}

/// A tail of only backslashes would mean the folder of the share, which is not the user's.
void require_tail(const UserFolder& folder) {
  if (folder.tail_position != 0 && tail_of(folder.path).find_first_not_of("\\ ") == base::npos)
    base::raise(base::error::kBadFileName, "\"" + folder.path + "\" names no folder below its share");
}

/// The number of the error that prevents access to a folder; 0 for none.
std::uint32_t look(Session& session, const std::string& path, std::string& why) {
  base::Trap trap;
  trap([&] { session.platform.files.list(path); });
  why = trap.description();
  return trap.number();
}

bool is_missing(std::uint32_t number) {
  return number == base::error::kFileNotFound || number == base::error::kPathNotFound;
}

/// Chooses a path to the folder that survives the share's removal, or else the share itself.
void choose_way(DeleteRun& run, UserFolder& folder, const std::string& below_share) {
  Session& session = run.session;
  folder.data = folder.unc + below_share;
  std::string why = "no other share leads there";
  const std::uint32_t number =
      folder.unc.empty() ? base::error::kPathNotFound : look(session, folder.data, why);
  if (number == 0)
    return;
  std::string through_share = "\\\\" + folder.server + "\\" + folder.share + below_share;
  std::string ignored;
  if (look(session, through_share, ignored) == 0) {
    folder.data = std::move(through_share);
    folder.through_own_share =
        std::any_of(run.shares.begin(), run.shares.end(), [&](const GoingShare& share) {
          return base::equals_fold(share.share, folder.share) &&
                 base::equals_fold(share.server, folder.server);
        });
    session.log.line("Reachable only through its share: " + folder.path + " (" + why + ")");
  } else if (is_missing(number)) {
    folder.missing = true;
  } else if (!run.order.take_ownership) {
    base::raise(number, folder.data + " cannot be opened, so it could not be deleted: " + why +
                            ". Taking ownership may help");
  }
}

void check_data(DeleteRun& run, UserFolder& folder, const std::string& below_share) {
  require_tail(folder);
  const std::string path = "\\\\" + folder.server + "\\" + folder.share + below_share;
  const TreePath own = require_own_tree(run.session, path, owner_of(run, folder));
  choose_way(run, folder, tail_of(own.text()));
}

/// In a WinNT domain the folder named after the user is deleted, with everything in it; for a kept account,
/// none.
std::optional<std::string> profile_below_share(const DeleteRun& run) {
  const std::string path = "\\\\" + run.profile.server + "\\" + run.profile.share + tail_of(run.profile.path);
  if (session::is_active_directory(run.session) || !run.order.profile_named_by_user)
    return tail_of(path);
  if (!run.order.account)
    return std::nullopt;
  return tail_of(cut_at_folder_of(path, run.logon_name));
}

/// A missing share leads to nothing.
bool has_folder(const DeleteRun& run, const UserFolder& folder) {
  return !folder.unc.empty() ||
         (!folder.share.empty() && folder_use(run.session)->folder_of_share(folder.server, folder.share));
}

void choose_data(DeleteRun& run) {
  UserFolder& home = run.home;
  UserFolder& profile = run.profile;
  home.data_goes = has_folder(run, home);
  if (home.data_goes)
    check_data(run, home, tail_of(home.path));
  profile.data_goes =
      run.DeleteProfile && !base::equals_fold(profile.share, home.share) && has_folder(run, profile);
  const auto below_share = profile.data_goes ? profile_below_share(run) : std::nullopt;
  if (below_share)
    check_data(run, profile, *below_share);
}

}  // namespace

void find_folders(DeleteRun& run) {
  const bool has_home = run.home.path.starts_with('\\');
  if (has_home)
    locate(run, run.home, kHome);
  guard_profile(run);
  const bool has_profile = run.DeleteProfile && run.profile.path.starts_with('\\');
  if (has_profile)
    locate(run, run.profile, kProfile);
  prepare_failure(run.session, "Not deleting " + run.display_name,
                  "Nothing of " + run.display_name + " was changed");
  choose_shares(run);
  // A path without server and share is unusable.
  if (has_home)
    static_cast<void>(parse_tree_path(run.home.path));
  if (has_profile)
    static_cast<void>(parse_tree_path(run.profile.path));
  for (const GoingShare& share : run.shares) {
    if (share.is_bare)
      require_own_share(run.session, share.server, share.share, {.account = run.logon_name});
  }
  keep_common_share(run);
  if (run.order.data)
    choose_data(run);
}

}  // namespace twk::lifecycle
