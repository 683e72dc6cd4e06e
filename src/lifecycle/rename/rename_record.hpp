#pragma once

#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "lifecycle/rename/rename_plan.hpp"

/// A renaming in progress is recorded in the database directory, "Rename-<identifier of the account>.txt",
/// from before its first change until it is complete. So the same order completes an interrupted renaming:
/// the record has the account's old names, and the removed shares with their access lists.
namespace twk::lifecycle {

struct RenameRecord {
  std::string identifier;          ///< of the account, which no renaming changes
  std::vector<std::string> names;  ///< the account's possible old names
  std::string account;             ///< its account name afterwards
  std::string old_name;            ///< the name in its folders; empty when they stay
  std::string new_name;
  std::optional<FolderRenaming> home;
  std::optional<FolderRenaming> profile;
};

/// The identifier of an account in the records; empty when the directory does not have one.
std::string record_identifier(const platform::ObjectPtr& user);

/// The record of an account; none when it is not being renamed. Raises when there is one that cannot be
/// read.
std::optional<RenameRecord> read_rename_record(session::Session& session, std::string_view identifier);
/// Raises what the files raise.
void write_rename_record(session::Session& session, const RenameRecord& record);
/// A failure is only logged: what was renamed stays renamed.
void remove_rename_record(session::Session& session, std::string_view identifier);

/// The record of an account that may have had this name before its renaming, in any case; none when there
/// is no readable one.
std::optional<RenameRecord> find_rename_record(session::Session& session, std::string_view name);

}  // namespace twk::lifecycle
