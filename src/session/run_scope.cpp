#include "session/run_scope.hpp"

#include <utility>

#include "session/session.hpp"

namespace twk::session {

RunScope::RunScope(Session& session, RunTerms terms, RunView& view)
    : run_(session.run),
      terms_before_(std::exchange(run_.terms, std::move(terms))),
      view_before_(std::exchange(run_.watched_by, &view)) {
  if (view_before_ == nullptr)
    run_.stopped = false;
}

RunScope::RunScope(Session& session, RunView& view) : RunScope(session, RunTerms(session.run.terms), view) {}

RunScope::~RunScope() {
  run_.terms = std::move(terms_before_);
  run_.watched_by = view_before_;
  if (view_before_ == nullptr)
    run_.stopped = false;
}

}  // namespace twk::session
