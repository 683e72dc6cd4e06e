#pragma once

#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "lifecycle/rename/rename_plan.hpp"

/// A renaming under way is on record in the database directory, "Rename-<identifier of the account>.txt",
/// from before its first change until all of it is done. So the same order ends a renaming that broke off:
/// the record knows the names that the account had, and the shares that are gone with their access lists.
namespace twk::lifecycle {

struct RenameRecord {
  std::string identifier;          ///< of the account, which no renaming changes
  std::vector<std::string> names;  ///< what the account could be called by before
  std::string account;             ///< its account name afterwards
  std::string old_name;            ///< what its folders were named after; empty when they stay
  std::string new_name;
  std::optional<FolderRenaming> home;
  std::optional<FolderRenaming> profile;
};

/// The identifier by which the records know an account; empty when the directory does not tell.
std::string record_identifier(const platform::ObjectPtr& user);

/// The record of an account; none when no renaming of it is under way. Raises when there is one that cannot
/// be read.
std::optional<RenameRecord> read_rename_record(session::Session& session, std::string_view identifier);
/// Raises what the files raise.
void write_rename_record(session::Session& session, const RenameRecord& record);
/// A failure is in the log alone: what was renamed is renamed.
void remove_rename_record(session::Session& session, std::string_view identifier);

/// The record of an account that could be called by this name before its renaming, in any case; none when
/// there is none that can be read.
std::optional<RenameRecord> find_rename_record(session::Session& session, std::string_view name);

}  // namespace twk::lifecycle
