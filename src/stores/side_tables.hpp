#pragma once

#include <span>
#include <string>
#include <string_view>
#include <vector>

#include "records/records.hpp"

namespace twk::session {
struct Session;
}

/// The small tables next to the record files. Three are text, a row a line (see `session/text_file.hpp`):
///
///     file       line               kept in
///     Mail.dat   name,value         mail_rows, icon "MAIL"; at most 49 lines are read
///     W2K.dat    kind,name,value    directory_rows, icon "USER" for kind "p", "MAIL" for any other (written as "m")
///     WTS.dat    value              terminal_rows, whose thirteen rows are fixed, in their order
///
/// A value is sub-item 1. Two more are files of permission records. Each is rewritten as a whole, atomically.
/// Every call raises the runtime error of the platform's files unless it says otherwise.
namespace twk::stores {

inline constexpr std::string_view kMailFile = "Mail.dat";
inline constexpr std::string_view kW2kFile = "W2K.dat";
inline constexpr std::string_view kWtsFile = "WTS.dat";
inline constexpr std::string_view kPermissionFile = "Permissions.dat";
inline constexpr std::string_view kSharePermissionFile = "SharePerm.dat";

/// "Mail.dat" as a fresh installation has it.
void create_mail_table(session::Session& session);

/// Replace the list's rows by the file's. A missing file leaves the list as it is; a line that does not fit
/// its table is skipped.
void load_mail_table(session::Session& session);
void load_w2k_table(session::Session& session);
void load_wts_table(session::Session& session);

void save_mail_table(session::Session& session);
void save_w2k_table(session::Session& session);
void save_wts_table(session::Session& session);

/// A row of the directory table.
struct DirectoryRow {
  std::string attribute;
  std::string value;
  bool of_user = false;  ///< of the account; else of its mailbox
};
/// The directory table as it is loaded.
std::vector<DirectoryRow> directory_rows(const session::Session& session);

/// The thirteen terminal-server rows, without values.
void fill_wts_rows(session::Session& session);

/// The records of "Permissions.dat" or "SharePerm.dat", by name; none when the file does not exist.
std::vector<records::PermissionRecord> read_permissions(session::Session& session, std::string_view file);
/// Replaces them. An empty "SharePerm.dat" gets one record that grants "Everyone" the access "Full Control".
void write_permissions(session::Session& session, std::string_view file,
                       std::span<const records::PermissionRecord> records);

}  // namespace twk::stores
