#pragma once

namespace twk::session {
struct Session;
}

namespace twk::windows {

/// Reads the files of the database directory into the lists of the windows; creates "Mail.dat" when it is not
/// there. A file that is missing is skipped. A failure goes to the log tab, and what was read stays.
void Load_Databases(session::Session& session);

}  // namespace twk::windows
