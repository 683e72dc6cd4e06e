#include "base/errors.hpp"
#include "base/text.hpp"
#include "creation/paths.hpp"
#include "lifecycle/dir_shr_rename.hpp"
#include "lifecycle/move_run.hpp"
#include "lifecycle/own_tree.hpp"
#include "resources/share502.hpp"

namespace twk::lifecycle {
namespace {

using resources::ShareResult;
using session::Session;

struct DataTexts {
  std::string_view no_share;
  std::string_view keeping;
  std::string_view failed;
  std::string_view copied;
  std::string_view moved;
  std::string_view waiting;
  std::string_view deleted;
  std::string_view not_deletable;
  std::string_view not_deleting;
};

constexpr DataTexts kProfile{"Could Not copy Profile because the New Profile Share was not created...",
                             "Not removing any profile shares or deleting Dirs.",
                             "Error Copying Profile Dir ",
                             "Profile Copied from ",
                             "Profile moved from ",
                             "Please Wait Locating Profile Share...",
                             "Deleted Profile Dir: ",
                             "Unable to Delete Profile Dir: ",
                             "Not Deleting Profile Dir: "};
constexpr DataTexts kHome{"Could Not copy Home because the New Home Share was not created...",
                          "Not removing any home shares or deleting Dirs.",
                          "Error Copying Home Dir ",
                          "Home Dir Copied from ",
                          "Home Dir moved from ",
                          "Please Wait Locating Home Share...",
                          "Deleted Home Dir: ",
                          "Unable to Delete Home Dir: ",
                          "Not Deleting Home Dir: "};

bool has_result(const MovedFolder& folder, ShareResult result) {
  return folder.share_result == static_cast<std::int16_t>(result);
}

bool may_move_profile(MoveRun& run) {
  const std::string& path = run.profile.old_path;
  bool may = !path.empty();
  if (Check_Path_Word(run.session, path, "%LOGONSERVER%", "Unable to Move Profile From %LOGONSERVER%."))
    may = false;
  if (Check_Path_Word(run.session, path, "NETLOGON", "Unable to Move Profile From NETLOGON directory."))
    may = false;
  if (path.ends_with(".man")) {
    run.session.platform.dialogs.beep();
    run.session.log.line("Unable to Move Mandatory Profiles.");
    may = false;
  }
  return may;
}

void cut_profile(MoveRun& run) {
  Session& session = run.session;
  if (session::is_active_directory(session) || !session.form1.Profile_Delete_Name.on())
    return;
  run.profile.old_path = cut_at_folder_of(run.profile.old_path, run.key);
  run.profile.full_path = run.profile.new_unc;
  run.profile.new_unc = cut_at_folder_of(run.profile.new_unc, run.key);
}

bool copy_data(MoveRun& run, const MovedFolder& folder, const DataTexts& texts) {
  Session& session = run.session;
  if (has_result(folder, ShareResult::kFailed)) {
    run.DataMode = static_cast<int>(FileWork::kCopy);
    session.log.line(texts.no_share);
    session.log.line(texts.keeping);
    session.platform.dialogs.beep();
    return false;
  }
  if (!Dir_Exists(session, folder.old_path)) {
    session.log.line("Could not find: " + folder.old_path + " For copying.");
    session.platform.dialogs.beep();
    return false;
  }
  return File_Operation(session, folder.old_path + "\\*.*", folder.new_unc,
                        static_cast<FileWork>(run.DataMode), {.account = run.key});
}

void log_copy(const MoveRun& run, const MovedFolder& folder, const DataTexts& texts, bool CopyOK) {
  const std::string_view what = !CopyOK ? texts.failed : run.DataMode == 2 ? texts.copied : texts.moved;
  run.session.log.line(std::string(what) + folder.old_path + " to " + folder.new_unc);
}

/// How the old folder is reached once its share has gone.
std::string old_way(MoveRun& run, const MovedFolder& folder, const DataTexts& texts) {
  Session& session = run.session;
  std::string way;
  base::Trap unknown;
  if (session.form1.chkAdmin_Shares.on()) {
    unknown([&] { way = Admin_Path_Of(session, folder.old_path, Has_Sub_Path(folder.old_path)); });
    return way;
  }
  session.multi_user.Label3.caption = std::string(texts.waiting);
  unknown([&] {
    way = Locate_Share_Point(session, creation::Get_Server_Name(folder.old_path),
                             creation::Get_Share_Name(folder.old_path));
  });
  if (way.empty())
    session.log.line("Unable to locate share point for " + folder.old_path);
  return way;
}

void remove_old_share(MoveRun& run, const MovedFolder& folder) {
  Session& session = run.session;
  if (Has_Sub_Path(folder.old_path) || Same_Share(run.profile.old_path, run.home.old_path) ||
      !has_result(folder, ShareResult::kMade))
    return;
  if (Delete_Share_Of(session, folder.old_path)) {
    session.log.line("Deleted Share: " + folder.old_path);
    return;
  }
  session.log.line("Error Deleting Share: " + folder.old_path);
  session.platform.dialogs.beep();
}

void remove_old_folder(MoveRun& run, const MovedFolder& folder, std::string way, const DataTexts& texts,
                       bool CopyOK) {
  Session& session = run.session;
  if (!session.form1.chkAdmin_Shares.on() && !way.empty())
    way += tail_of(folder.old_path);
  if (CopyOK && !way.empty()) {
    base::Trap trap;
    if (!trap([&] {
          session.platform.files.remove_directory(
              require_own_tree(session, way, {.account = run.key}).text());
        }))
      session.log.line(trap.description());
  }
  const std::string& named = way.empty() ? folder.old_path : way;
  if (CopyOK && !Dir_Exists(session, named))
    return session.log.line(std::string(texts.deleted) + named);
  session.log.line(CopyOK ? std::string(texts.not_deletable) + named
                          : std::string(texts.not_deleting) + named + " Due to error copying data");
  session.platform.dialogs.beep();
}

void move_folder(MoveRun& run, MovedFolder& folder, const DataTexts& texts) {
  const bool CopyOK = copy_data(run, folder, texts);
  log_copy(run, folder, texts, CopyOK);
  const std::string way = old_way(run, folder, texts);
  remove_old_share(run, folder);
  if (run.DataMode == static_cast<int>(FileWork::kMove))
    remove_old_folder(run, folder, way, texts, CopyOK);
}

}  // namespace

void move_data(MoveRun& run) {
  Session& session = run.session;
  session.multi_user.Label3.caption = std::string(run.DataMode == 2 ? "Copying Data" : "Moving Data");
  const bool DoHome = !run.home.old_path.empty();
  const bool DoProfile = may_move_profile(run);
  if (run.DataMode == static_cast<int>(FileWork::kMove))
    look_up_temp(session);
  if (run.profile.wanted && DoProfile) {
    cut_profile(run);
    move_folder(run, run.profile, kProfile);
  }
  if (run.home.wanted && DoHome)
    move_folder(run, run.home, kHome);
}

}  // namespace twk::lifecycle
