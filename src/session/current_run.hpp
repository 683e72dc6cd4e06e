#pragma once

#include <functional>
#include <memory>
#include <string>

#include "session/run_view.hpp"

namespace twk::lifecycle {
class FolderUse;
}

namespace twk::session {

/// A person's answer to a step that a run does not take on its own.
enum class Consent {
  kAsk,  ///< asked when the step is reached, in a box that defaults to No
  kNo,
  kYes
};

/// What an operation on accounts may do, and whether it is one at all; part of every order.
struct RunTerms {
  bool silent = false;                     ///< nothing is asked
  Consent even_if_shared = Consent::kAsk;  ///< folders and shares that others also use are changed
  Consent new_paths_anyway =
      Consent::kAsk;  ///< an account gets its new paths although its data was not copied
  /// Set for a rehearsal: called with what would be done to a tree, instead of doing it.
  std::function<void(const std::string&)> rehearse = {};
};

/// The operation that is going on, for the routines that it consists of. Between operations it has no terms
/// and a view that shows nothing.
struct CurrentRun {
  RunTerms terms;
  RunView* watched_by = nullptr;
  bool stopped = false;                           ///< a person wants it to end
  std::string user;                               ///< whom it is at, by name; empty between users
  std::shared_ptr<lifecycle::FolderUse> folders;  ///< see `lifecycle::KnownFolders`

  [[nodiscard]] RunView& view() const;
  /// A turn for events. False once the operation should end.
  bool goes_on();
};

}  // namespace twk::session
