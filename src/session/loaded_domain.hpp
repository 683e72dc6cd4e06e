#pragma once

#include <set>
#include <string>

#include "controls/list_view.hpp"
#include "controls/observable.hpp"
#include "controls/tree_view.hpp"

namespace twk::session {

/// What narrows or widens a selection for a run over many; see `batch::walk_selection`.
struct SelectionTerms {
  bool units_below = false;  ///< a unit also means the users of the units below it
  std::string filter;        ///< of a unit only the users that this filter finds, RFC 4515; empty for all
  std::set<std::string> excepted;  ///< users who are left out, see `batch::leave_out`
};

/// What is not listed by a load but looked up when it is named, for a command that needs little of a domain.
struct LookedUp {
  bool groups = false;
  bool units = false;                  ///< and the users in them
  std::set<std::string> asked_groups;  ///< names in upper case
};

/// The domain as it was loaded and as the runs have changed it since: its tree and the lists that the windows
/// show. Keys are ADsPaths, in a WinNT domain names.
struct LoadedDomain {
  controls::Signal mode_known;                ///< the mode of the domain that is being loaded was determined
  controls::Observable<std::string> loading;  ///< what the load of the session is at, for the splash
  LookedUp looked_up;
  controls::TreeView tree;
  /// Sub-items, of those that were read with them: logon name, full name, unit, state, expiry; in a WinNT
  /// domain full name, description, state.
  controls::ListView users;
  controls::ListView groups;     ///< without those that a selection cannot hold
  controls::ListView units;      ///< organizational units
  controls::ListView selection;  ///< users, groups and organizational units chosen for a run over many
  SelectionTerms selection_terms;
  controls::ListView all_groups;  ///< sub-item 1 is the type
  // Between the lists of each pair, rows are only moved.
  controls::ListView template_choice;  ///< groups that a template can name
  controls::ListView template_groups;  ///< groups of the loaded template
  controls::ListView Members;       ///< users in the group that is shown; sub-item 1 marks the primary group
  controls::ListView NotMembers;    ///< all other users
  controls::ListView own_groups;    ///< groups of the user on the details tab
  controls::ListView other_groups;  ///< all others
};

}  // namespace twk::session
