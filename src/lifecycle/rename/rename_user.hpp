#pragma once

#include <string>

#include "platform/directory.hpp"
#include "session/current_run.hpp"
#include "session/run_outcome.hpp"

namespace twk::controls {
struct TreeNode;
}
namespace twk::session {
struct Preferences;
struct Session;
}  // namespace twk::session

namespace twk::lifecycle {

class RunRecord;

/// The names of a user of an Active Directory domain.
struct UserNames {
  std::string full_name;  ///< the name of the object
  std::string first;
  std::string last;
  std::string display;
  std::string principal;  ///< "jo@twk.test"; empty for none
  std::string logon;      ///< before Windows 2000
};

/// What is asked of a renaming: all names as they are to be.
struct RenameUserOrder {
  UserNames names;
  std::string principal_before;
  bool full_name_changed = false;
  bool logon_changed = false;
  bool folders = false;             ///< shares and folders too, if the name that they contain has changed
  bool by_full_name = false;        ///< that name is the full name, otherwise the logon name
  bool tree_shows_display = false;  ///< otherwise the full name
  session::RunTerms terms;
  RunRecord* run_record = nullptr;  ///< of a run over many; null for one renaming
  platform::ObjectPtr user;         ///< as it was read for this order; null to read it again
};

/// The names that the user of a node has, to be changed as asked, and what the preferences say. Raises what
/// the directory raises.
RenameUserOrder rename_order(session::Session& session, const controls::TreeNode& node,
                             const session::Preferences& preferences);
/// True when a name holds what no name may hold; the status line says what.
bool has_refused_text(session::Session& session, const UserNames& names);

/// Writes the logon names and the others, then renames the object and updates the node and the rows of the
/// user; then shares and folders. Names that are refused together are written one after the other, the logon
/// names first. What was saved until a refusal stays saved; a box reports it. The outcome has the worst row
/// of the log tab.
session::RunOutcome rename_user(session::Session& session, controls::TreeNode& node,
                                const RenameUserOrder& order, session::RunView& view);

}  // namespace twk::lifecycle
