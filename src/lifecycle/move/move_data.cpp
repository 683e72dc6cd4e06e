#include "base/error_words.hpp"
#include "base/errors.hpp"
#include "base/text.hpp"
#include "controls/basic.hpp"
#include "creation/paths.hpp"
#include "lifecycle/move/move_run.hpp"
#include "lifecycle/move/unfinished_move.hpp"
#include "lifecycle/rename/dir_shr_rename.hpp"
#include "lifecycle/trees/file_owner.hpp"
#include "lifecycle/trees/folder_use.hpp"
#include "lifecycle/trees/own_tree.hpp"
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

constexpr int kMove = static_cast<int>(FileWork::kMove);
constexpr int kCopy = static_cast<int>(FileWork::kCopy);

bool has_result(const MovedFolder& folder, ShareResult result) {
  return folder.share_result == static_cast<std::int16_t>(result);
}

/// The profile's or the home's part of the move.
struct Part {
  MovedFolder& folder;
  const DataTexts& texts;
  int mode = kMove;  ///< the run's mode when this one's turn came
  bool CopyOK = false;
};

Owner owner_of(const MoveRun& run, const std::string& own_share) {
  return {.account = run.key, .own_share = own_share};
}

void log_copy(const MoveRun& run, const Part& part) {
  const std::string_view what = !part.CopyOK         ? part.texts.failed
                                : part.mode == kCopy ? part.texts.copied
                                                     : part.texts.moved;
  run.session.log.line(std::string(what) + part.folder.old_path + " to " + part.folder.new_unc);
}

/// The folders between the one that was made and the account's new one.
void make_way(MoveRun& run, const MovedFolder& folder) {
  TreePath way = parse_tree_path(folder.new_unc);
  std::vector<std::string> parts;
  for (std::size_t levels = levels_below_new(run, folder); levels > 0 && !way.parts.empty(); --levels) {
    parts.insert(parts.begin(), std::move(way.parts.back()));
    way.parts.pop_back();
  }
  for (std::string& part : parts) {
    way.parts.push_back(std::move(part));
    if (run.session.platform.files.is_directory(way.text()))
      continue;
    run.session.platform.files.make_directory(way.text());
    run.session.log.line("Created Dir: " + way.text());
  }
}

bool copy_contents(MoveRun& run, Part& part, OwnerKeeper& owners) {
  const MovedFolder& folder = part.folder;
  const CopyRules rules{
      .replaces = !folder.used_by_others,
      .except = folder.except,
      .made = [&owners](const std::string& from, const std::string& to) { owners.keep(from, to); }};
  base::Trap trap;
  trap([&] { make_way(run, folder); });
  run.session.status.panel1 = trap.description();
  if (trap.number() != 0)
    run.session.log.reason(base::in_words(trap.number(), trap.description()));
  return trap.number() == 0 &&
         File_Operation(run.session, folder.old_path + "\\*.*", folder.new_unc, FileWork::kCopy,
                        owner_of(run, creation::Get_Share_Name(folder.old_path)), rules);
}

/// After a stopped copy nothing is asked: nothing more happens to the user.
MoveStep fail_copy(MoveRun& run, const Part& part) {
  const std::string& why = run.session.status.panel1.get();
  const std::string what =
      std::string(part.texts.failed) + part.folder.old_path + (why.empty() ? why : ": " + why);
  if (run.session.run.stopped) {
    run.session.log.reason("The copying was stopped");
    return MoveStep::kFailed;
  }
  return wants_new_paths(run, what) ? MoveStep::kGoOn : MoveStep::kFailed;
}

/// A folder that the server does not have holds nothing to lose; if an interrupted move has filled the new
/// one, this is expected.
void tell_missing(MoveRun& run, const MovedFolder& folder) {
  const std::string text = "Could not find: " + folder.old_path + " For copying.";
  run.session.platform.dialogs.beep();
  if (folder.was_there)
    run.session.log.line(text);
  else
    warn(run, text);
}

MoveStep copy_part(MoveRun& run, Part& part, OwnerKeeper& owners) {
  Session& session = run.session;
  const MovedFolder& folder = part.folder;
  part.mode = run.DataMode;
  if (has_result(folder, ShareResult::kFailed)) {
    run.DataMode = part.mode = kCopy;
    session.log.line(part.texts.no_share);
    session.log.line(part.texts.keeping);
    session.platform.dialogs.beep();
  } else if (folder.old == OldFolder::kAlready) {
    part.CopyOK = true;
    session.log.line(folder.old_path + " is already the new place");
    return MoveStep::kGoOn;
  } else if (folder.old == OldFolder::kMissing) {
    tell_missing(run, folder);
  } else if (folder.old == OldFolder::kThere) {
    part.CopyOK = copy_contents(run, part, owners);
  }
  if (part.CopyOK)
    return MoveStep::kGoOn;
  log_copy(run, part);
  return folder.old == OldFolder::kThere && !has_result(folder, ShareResult::kFailed) ? fail_copy(run, part)
                                                                                      : MoveStep::kGoOn;
}

/// How to reach the old folder once its share is gone; a folder below a share by its own path, if there
/// is no other.
std::string old_way(MoveRun& run, const Part& part) {
  Session& session = run.session;
  const std::string& path = part.folder.old_path;
  std::string way;
  base::Trap unknown;
  if (run.order.through_drive_shares) {
    unknown([&] { way = Admin_Path_Of(session, path, Has_Sub_Path(path)); });
  } else {
    session.run.view().step(part.texts.waiting);
    unknown([&] {
      way = Locate_Share_Point(session, creation::Get_Server_Name(path), creation::Get_Share_Name(path));
    });
    if (way.empty())
      session.log.line("Unable to locate share point for " + path);
    else
      way += tail_of(path);
  }
  if (way.empty() || !unknown([&] { way = parse_tree_path(way).text(); }) || !Dir_Exists(session, way))
    return Has_Sub_Path(path) ? path : std::string();
  return way;
}

/// False when the share stays although it was to be removed. `way` leads to the folder that is to be removed
/// after it.
bool remove_old_share(MoveRun& run, const MovedFolder& folder, const std::string& way) {
  Session& session = run.session;
  if (Has_Sub_Path(folder.old_path) || Same_Share(run.profile.old_path, run.home.old_path) ||
      !has_result(folder, ShareResult::kMade))
    return true;
  const std::string server = creation::Get_Server_Name(folder.old_path);
  const std::string share = creation::Get_Share_Name(folder.old_path);
  base::Trap trap;
  bool deleted = false;
  trap([&] {
    // An interrupted move has removed it.
    if (!folder_use(session)->folder_of_share(server, share))
      return;
    require_own_share(session, server, share, owner_of(run, share));
    if (!way.empty())
      remember_old_folder(session, run.key, folder.old_path, way);
    deleted = delete_share(session, server, share);
  });
  if (trap.number() != 0) {
    warn(run, "Error Deleting Share: " + folder.old_path + ": " +
                  base::in_words(trap.number(), trap.description()));
    session.platform.dialogs.beep();
  } else if (deleted) {
    session.log.line("Deleted Share: " + folder.old_path);
  }
  return trap.number() == 0;
}

void remove_old_folder(MoveRun& run, const Part& part, const std::string& way) {
  Session& session = run.session;
  base::Trap trap;
  trap([&] {
    const std::string share = creation::Get_Share_Name(part.folder.old_path);
    session.platform.files.remove_directory(require_own_tree(session, way, owner_of(run, share)).text());
  });
  if (!Dir_Exists(session, way))
    return session.log.line(std::string(part.texts.deleted) + way);
  warn(run,
       std::string(part.texts.not_deletable) + way +
           (trap.number() == 0 ? std::string() : ": " + base::in_words(trap.number(), trap.description())));
  session.platform.dialogs.beep();
}

/// Deletes the old folder's contents, now that everything is in the new one. What was added meanwhile is
/// copied first.
bool remove_contents(MoveRun& run, const Part& part) {
  const MovedFolder& folder = part.folder;
  if (run.session.run.terms.rehearse) {
    run.session.run.terms.rehearse("Remove what " + folder.old_path + " holds");
    return true;
  }
  return File_Operation(run.session, folder.old_path + "\\*.*", folder.new_unc, FileWork::kMove,
                        owner_of(run, creation::Get_Share_Name(folder.old_path)),
                        {.replaces = !folder.used_by_others, .apart = true, .except = folder.except});
}

/// A folder that only its own share leads to stays, empty, when that is gone. For one whose share was removed
/// by an interrupted move, the path is remembered.
void leave_old(MoveRun& run, const Part& part) {
  const MovedFolder& folder = part.folder;
  const bool moves = part.mode == kMove;
  const bool there = folder.old == OldFolder::kThere;
  if (moves && there && !remove_contents(run, part)) {
    warn(run, std::string(part.texts.not_deletable) + folder.old_path);
    return run.session.platform.dialogs.beep();
  }
  const std::string way =
      there ? old_way(run, part) : remembered_old_folder(run.session, run.key, folder.old_path);
  if (!remove_old_share(run, folder, moves ? way : std::string()) || !moves)
    return;
  if (!way.empty())
    remove_old_folder(run, part, way);
  else if (there)
    warn(run, "The empty folder of " + folder.old_path + " stays: only its own share led to it");
  forget_old_folder(run.session, run.key, folder.old_path);
}

void finish_part(MoveRun& run, const Part& part) {
  const MovedFolder& folder = part.folder;
  if (folder.old == OldFolder::kAlready && part.CopyOK)
    return;
  if (part.CopyOK)
    log_copy(run, part);
  if (part.CopyOK || folder.old == OldFolder::kMissing)
    return leave_old(run, part);
  if (part.mode == kMove)
    run.session.log.line(std::string(part.texts.not_deleting) + folder.old_path +
                         " Due to error copying data");
  run.session.platform.dialogs.beep();
}

/// What was copied for a user who is not moved stays on both sides.
MoveStep tell_left(MoveRun& run, const std::vector<Part>& parts) {
  for (Part part : parts) {
    part.mode = kCopy;
    if (part.CopyOK && part.folder.old == OldFolder::kThere)
      log_copy(run, part);
  }
  return MoveStep::kFailed;
}

void tell_profile_left(MoveRun& run) {
  for (const std::string_view reason : reasons_to_leave_profile(run.profile.old_path)) {
    run.session.platform.dialogs.beep();
    warn(run, reason);
  }
}

}  // namespace

std::vector<std::string_view> reasons_to_leave_profile(const std::string& path) {
  std::vector<std::string_view> reasons;
  if (base::find_fold(path, "%LOGONSERVER%") != base::npos)
    reasons.emplace_back("Unable to Move Profile From %LOGONSERVER%.");
  if (base::find_fold(path, "NETLOGON") != base::npos)
    reasons.emplace_back("Unable to Move Profile From NETLOGON directory.");
  if (names_mandatory_profile(path))
    reasons.emplace_back("Unable to Move Mandatory Profiles.");
  return reasons;
}

MoveStep move_data(MoveRun& run) {
  Session& session = run.session;
  session.run.view().step(run.DataMode == kCopy ? "Copying Data" : "Moving Data");
  tell_profile_left(run);
  if (run.DataMode == kMove)
    look_up_temp(session);
  std::vector<Part> parts;
  if (run.profile.old != OldFolder::kNone)
    parts.push_back({run.profile, kProfile});
  if (run.home.old != OldFolder::kNone)
    parts.push_back({run.home, kHome});
  if (parts.empty() && run.home.old_path.empty() && run.profile.old_path.empty())
    warn(run, "No data was moved: the account has neither a home nor a profile");
  else if (parts.empty() && !run.warned)
    warn(run, "No data was moved: neither the home nor the profile goes to another place");
  OwnerKeeper owners(session);
  for (Part& part : parts) {
    if (copy_part(run, part, owners) != MoveStep::kGoOn)
      return tell_left(run, parts);
  }
  if (!owners.refusal().empty())
    warn(run, "The copies belong to the account that made them, because their owners could not be set: " +
                  owners.refusal());
  for (const Part& part : parts)
    finish_part(run, part);
  return MoveStep::kGoOn;
}

}  // namespace twk::lifecycle
