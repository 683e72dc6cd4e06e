#pragma once

namespace twk::session {
struct Session;
}

namespace twk::windows {

/// Reads everything anew: the domain named in `DomName` into an emptied tree and lists, then the database
/// files; selects the first node. A domain that does not answer leaves the tree empty and says so in the
/// status bar; sites and templates are read all the same.
void Refresh(session::Session& session);

/// The entry that limits the session to one OU can be used again, which lifts the limit while there is one,
/// and tells which.
void show_managed_ou(session::Session& session);

}  // namespace twk::windows
