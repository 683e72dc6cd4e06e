#pragma once

#include <string>
#include <string_view>
#include <vector>

#include "lifecycle/rename/rename_plan.hpp"
#include "lifecycle/rename/rename_record.hpp"

/// The renaming of an account together with its folders and shares: all tests first, then a record, then the
/// account, then the folders. `rename_user` and `rename_nt` are the two windows that start it.
namespace twk::lifecycle {

/// A request to rename.
struct RenameOrder {
  platform::ObjectPtr object;
  std::string account;             ///< the account name now
  std::string new_account;         ///< afterwards
  std::vector<std::string> names;  ///< names that the account has now but not afterwards
  bool folders = false;            ///< shares and folders too
  std::string old_name;            ///< the name that they contain
  std::string new_name;
  RunRecord* run_record = nullptr;  ///< for a renaming without folders; null for a record of its own
};

/// A request that has passed its tests.
struct PreparedRename {
  RenamedUser user;
  FoldersPlan plan;
  RenameRecord record;
  bool keeps_record =
      false;  ///< there is a record of an earlier renaming whose folders this request leaves alone
  RunRecord* run_record = nullptr;  ///< where the record is, unless it has a file of its own
};

/// Tests a request and records it; nothing else is changed. An interrupted renaming of the account continues
/// from its record. Raises the obstacle, and when a record that folders need cannot be written.
PreparedRename prepare_rename(session::Session& session, const RenameOrder& order);
/// Everything was done.
void end_rename(session::Session& session, const PreparedRename& prepared);

/// Renames one planned folder with its shares, and writes the new paths to the account. Fails as a whole: a
/// refused step undoes the previous ones, and what cannot be undone is reported with the reasons of the next
/// light. An interrupted renaming is completed. True when the folder has its new name; otherwise the reason
/// is reported.
bool Rename_ShrDir(session::Session& session, const RenamedUser& user, const PlannedFolder& folder);

/// The two windows' wording in the log about the profile.
struct ProfileTexts {
  std::string_view renamed;
  std::string_view failed;
};

/// Renames home and profile of a prepared request. The outcome of each is on the log tab. False when one that
/// should have been renamed was not.
bool rename_folders_of(session::Session& session, const PreparedRename& prepared, const ProfileTexts& texts);

/// Reports in YELLOW that folders were not renamed as requested, because the name that they contain does not
/// change.
void tell_folders_stay(session::Session& session, std::string_view name_of_folders, const std::string& user);

}  // namespace twk::lifecycle
