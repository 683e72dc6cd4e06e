#pragma once

namespace twk::session {
struct Session;
}

/// Compaction of "Site.dat" and "Template.dat": the records that are marked as deleted go, the others close
/// up and are numbered anew, while nobody else can make or change one. The files keep access and links.
namespace twk::stores {

/// Asks whether to compact, and later whether to prune; does it; tells the outcome in the status, on the log
/// tab and in "Log.txt". Each file is replaced at once, so that a failure, told by message, leaves it as it
/// was. True when it came through.
bool Compact_Database(session::Session& session);

/// Whether groups that the domain no longer has go from the templates.
enum class Pruning { kAsk, kKeepGroups, kRemoveGroups };

/// The same without the first question; true when it came through.
bool compact_database(session::Session& session, Pruning pruning);

/// Takes the groups that the domain does not have out of `ActiveTemplate`; "Log.txt", which is open, names
/// them.
void Check_Template_Groups(session::Session& session);

}  // namespace twk::stores
