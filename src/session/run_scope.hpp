#pragma once

#include "session/current_run.hpp"

namespace twk::session {

struct Session;

/// Gives a session's operation its terms and its view for a scope. Inside another such scope that one's come
/// back afterwards. A wish to
/// stop counts until the outermost one ends.
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
