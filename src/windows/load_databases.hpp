#pragma once

namespace twk::session {
struct Session;
}

namespace twk::windows {

/// Reads the files of the database directory into the lists of the windows; creates a missing "Mail.dat".
/// Other missing files are skipped. A failure is reported on the log tab, and what was read stays.
void Load_Databases(session::Session& session);

}  // namespace twk::windows
