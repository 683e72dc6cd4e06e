#pragma once

namespace twk::session {
struct Session;
}

namespace twk::stores {

/// Copies each file of the database directory beside itself as "*.bak", over an older copy; the menu's
/// "Backup DataBase Files". A file that is not there is skipped. A file that cannot be copied is told in a
/// box, its older copy stays, and the others are still copied. The outcome goes to the status bar; true when
/// all is copied.
bool Backup_Databases(session::Session& session);

}  // namespace twk::stores
