#pragma once

#include <string>
#include <string_view>
#include <vector>

#include "lifecycle/rename/rename_plan.hpp"
#include "lifecycle/rename/rename_record.hpp"

/// The renaming of an account together with its folders and shares: all tests first, then a record, then the
/// account, then the folders. `rename_user` and `rename_nt` are the two windows that order it.
namespace twk::lifecycle {

/// What is ordered.
struct RenameOrder {
  platform::ObjectPtr object;
  std::string account;             ///< the account name now
  std::string new_account;         ///< afterwards
  std::vector<std::string> names;  ///< what the account can be called by now and not afterwards
  bool folders = false;            ///< shares and folders too
  std::string old_name;            ///< what they are named after
  std::string new_name;
};

/// An order that has passed its tests.
struct PreparedRename {
  RenamedUser user;
  FoldersPlan plan;
  RenameRecord record;
  bool keeps_record = false;  ///< an earlier renaming is on record whose folders this order leaves alone
};

/// Tests an order and puts it on record; nothing else is changed. A renaming of the account that broke off
/// goes on with what its record says. Raises what is in the way, and when a record that folders need cannot
/// be written.
PreparedRename prepare_rename(session::Session& session, const RenameOrder& order);
/// All of it was done.
void end_rename(session::Session& session, const PreparedRename& prepared);

/// Renames one planned folder with its shares, and writes the new paths to the account. Fails as a whole: a
/// step that is refused takes back those before it, and what cannot be taken back is told with the reasons
/// of the next light. A renaming that broke off halfway is ended. True when the folder has its new name; the
/// reason is told when not.
bool Rename_ShrDir(session::Session& session, const RenamedUser& user, const PlannedFolder& folder);

/// How the two windows word the log of the profile.
struct ProfileTexts {
  std::string_view renamed;
  std::string_view failed;
};

/// Home and profile of a prepared order. The outcome of each is on the log tab. False when one could not be
/// renamed that should have been.
bool rename_folders_of(session::Session& session, const PreparedRename& prepared, const ProfileTexts& texts);

/// Tells in YELLOW that folders were to be renamed and were not, since the name they are made of stays.
void tell_folders_stay(session::Session& session, std::string_view name_of_folders, const std::string& user);

}  // namespace twk::lifecycle
