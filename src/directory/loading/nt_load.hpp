#pragma once

namespace twk::session {
struct Session;
}

namespace twk::directory {

/// Fills the tree, flat below one root, and the lists from a WinNT domain, and binds `DomainContainer`. True
/// when a user or a group was found. With "/DEBUG" a failure raises.
bool Load_NT_Domain(session::Session& session);

/// Fills the list of users of the multi-user window again. The status bar reports a failure.
void show_nt_users(session::Session& session);

}  // namespace twk::directory
