#pragma once

namespace twk::session {
struct Session;
}

namespace twk::windows {

/// Asks whether to compact the database, and later whether to prune; does it; shows the outcome in the
/// status, on the log tab and in "Log.txt". A failure is shown in a box. True when it succeeded.
bool Compact_Database(session::Session& session);

/// Whether groups that the domain no longer has are removed from the templates.
enum class Pruning { kAsk, kKeepGroups, kRemoveGroups };

/// The same without the first question.
bool compact_database(session::Session& session, Pruning pruning);

}  // namespace twk::windows
