#pragma once

#include <functional>
#include <memory>
#include <string>

#include "session/run_view.hpp"

namespace twk::lifecycle {
class FolderUse;
}

namespace twk::session {

struct Session;

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
  std::shared_ptr<lifecycle::FolderUse> folders;  ///< see `lifecycle::KnownFolders`

  [[nodiscard]] RunView& view() const;
  /// A turn for events. False once the operation should end.
  bool goes_on();
};

/// Gives a session's operation its terms and its view for a scope. Inside another such scope that one's come
/// back afterwards.
class RunScope {
 public:
  RunScope(Session& session, RunTerms terms, RunView& view);
  /// With the terms that the session has.
  RunScope(Session& session, RunView& view);
  RunScope(const RunScope&) = delete;
  RunScope& operator=(const RunScope&) = delete;
  ~RunScope();

 private:
  CurrentRun& run_;
  RunTerms terms_before_;
  RunView* view_before_;
};

}  // namespace twk::session
