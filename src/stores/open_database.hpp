#pragma once

namespace twk::session {
struct Session;
}

namespace twk::stores {

/// Prepares what does not depend on the files, converts those of an older generation, which boxes report, and
/// reads all. Raises a runtime error when the conversion fails, before anything is read.
void open_database(session::Session& session);

/// Reads the files of the database directory; creates a missing "Mail.dat". Other missing files are skipped.
/// A failure is reported on the log tab, and what was read stays.
void load_database(session::Session& session);

}  // namespace twk::stores
