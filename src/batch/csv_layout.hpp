#pragma once

#include <string>
#include <string_view>
#include <vector>

namespace twk::session {
struct Session;
struct ImportState;
}  // namespace twk::session

/// The window `CSV_Import`: which columns of the file are what.
namespace twk::batch {

/// The text of an import file: UTF-8 as it is (without its byte-order mark), anything else from code page
/// 1252.
std::string import_text(std::string_view bytes);

/// The line at `position`, without its end (CR LF, LF or CR); `position` moves behind it. False at the end.
bool next_line(std::string_view text, std::size_t& position, std::string_view& line);

/// Takes a line into `ImportLine`, `ImportFields` and `ImportFieldCount`: every comma separates. Elements
/// beyond the line's own fields keep what an earlier line left.
void split_import_line(session::ImportState& state, std::string_view line);

/// Shows the path, the first two lines and the columns to choose from. Raises what reading the file raises.
void load_csv_layout(session::Session& session, std::string_view path);
/// First, middle and last name in the first three columns, or free choice.
void chkImport_Click(session::Session& session);
/// OK and Cancel. OK puts a chosen password column and account-name column into the set-up fields, where they
/// stay.
void csv_layout_ok(session::Session& session);
void csv_layout_cancel(session::Session& session);

}  // namespace twk::batch
