#pragma once

#include <string>

#include "session/current_run.hpp"
#include "session/run_outcome.hpp"

namespace twk::controls {
struct TreeNode;
}
namespace twk::session {
struct Session;
}

namespace twk::lifecycle {

class RunRecord;

/// What is asked of the renaming of a user of a WinNT domain.
struct RenameNtOrder {
  std::string old_name;
  std::string logon;
  std::string full_name;
  bool logon_changed = false;
  bool full_name_changed = false;
  bool folders = false;  ///< shares and folders too
  session::RunTerms terms;
  RunRecord* run_record = nullptr;  ///< of a run over many; null for one renaming
};

/// The names that the user of a node has, to be changed as asked. Raises what the directory raises.
RenameNtOrder rename_order_nt(session::Session& session, const controls::TreeNode& node);
/// True when there is no name, or one that holds what no name may hold; the status line says what.
bool has_refused_text(session::Session& session, const RenameNtOrder& order);

/// Renames the account, its shares and folders, then writes the full name; tree and lists follow. The outcome
/// has the worst row of the log tab.
session::RunOutcome rename_nt(session::Session& session, controls::TreeNode& node, const RenameNtOrder& order,
                              session::RunView& view);

}  // namespace twk::lifecycle
