#pragma once

#include <memory>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "lifecycle/rename/rename_plan.hpp"
#include "platform/files.hpp"

/// A renaming in progress is recorded in the database directory, "Rename-<identifier of the account>.txt",
/// from before its first change until it is complete. So the same order completes an interrupted renaming:
/// the record has the account's old names, and the removed shares with their access lists.
///
/// A run that renames no folders needs only the names, and keeps them in one file, "Rename-run.txt", that
/// bears one record after the other: a file for each account would take longer than its renaming. It outlives
/// the program, but need not outlive a power cut.
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

/// The file of a run, which holds a lock on it. A second run at the same time keeps a record for each
/// account.
class RunRecord {
 public:
  /// Within a run, of which it says what may be written.
  explicit RunRecord(session::Session& session);
  RunRecord(const RunRecord&) = delete;
  RunRecord& operator=(const RunRecord&) = delete;
  ~RunRecord();

  /// The record of the account before gets a file of its own if its renaming did not end. Raises what the
  /// files raise.
  void begin(const RenameRecord& record);
  void end();

 private:
  void open();

  session::Session& session_;
  std::unique_ptr<platform::RandomFile> file_;  ///< null when another run has it
  bool opened_ = false;
  std::optional<RenameRecord> under_way_;
};

/// Gives the account that a killed run was at a record of its own.
void settle_run_record(session::Session& session);

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
