#pragma once

namespace twk::session {
struct Session;
}

namespace twk::stores {

/// Copies each file of the database directory to "*.bak" next to it, over an older copy; the menu's
/// "Backup DataBase Files". A missing file is skipped. A file that cannot be copied is reported in a box, its
/// older copy stays, and the others are still copied. The status bar shows the outcome; true when all were
/// copied.
bool Backup_Databases(session::Session& session);

}  // namespace twk::stores
