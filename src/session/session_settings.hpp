#pragma once

namespace twk::session {

struct Session;

/// Reads the settings that a session's own values come from: the domain and its limit to an OU, the database
/// directory, the file that marks a profile, whether all users are loaded. Writes `DBVersion` in a fresh
/// installation.
void read_session_settings(Session& session);

}  // namespace twk::session
