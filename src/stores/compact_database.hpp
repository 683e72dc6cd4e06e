#pragma once

namespace twk::session {
struct Session;
}

namespace twk::stores {

/// Asks whether to compact the database.
bool agrees_to_compact(session::Session& session);

/// Whether groups that the domain no longer has are removed from the templates.
enum class Pruning { kAsk, kKeepGroups, kRemoveGroups };

/// Loads the domain again and compacts sites and templates; shows the outcome in the status, on the log tab
/// and in "Log.txt". A failure is shown in a box. True when it succeeded.
bool compact_database(session::Session& session, Pruning pruning);

}  // namespace twk::stores
