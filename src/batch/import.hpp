#pragma once

#include <string_view>

namespace twk::session {
struct Session;
}

/// Users from a file of comma-separated lines, one a line. There is no quoting: every comma separates.
namespace twk::batch {

/// The whole command: checks the selection, asks for the file, shows the window `CSV_Import` for its layout,
/// runs, shows the result.
void Import_Command(session::Session& session);

/// Runs the creation for each line of the file. True when it reached the end or the person stopped it; False
/// when a halt option ended it or a file could not be read or written. "Import.err" and the summary are made
/// in the database directory; what failed is in `ImportState::failure`. Input is UTF-8, with or without a
/// byte-order mark, or code page 1252. "Import.err" itself can be read again: lines that such a run did not
/// reach are in it afterwards. With `ImportState::rehearsed` the lines are checked as in a real run,
/// but nothing is made or written.
bool Import_Users(session::Session& session, std::string_view path);

/// The Stop button: the run ends before the next line.
void CancelButton_Click(session::Session& session);

}  // namespace twk::batch
