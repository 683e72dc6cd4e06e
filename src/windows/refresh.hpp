#pragma once

namespace twk::windows {

struct Desktop;

/// Reads everything again: the domain named in `DomName` into emptied tree and lists, then the database
/// files; selects the first node. A domain that does not answer leaves the tree empty and says so in the
/// status bar; sites and templates are still read.
void Refresh(Desktop& session);

/// Enables the entry that limits the session to one OU; while there is a limit, it names and lifts
/// it.
void show_managed_ou(Desktop& session);

}  // namespace twk::windows
