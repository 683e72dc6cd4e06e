#include "session/current_run.hpp"

#include <utility>

#include "session/session.hpp"

namespace twk::session {
namespace {

class NobodyWatches final : public RunView {
 public:
  void status(std::string_view /*text*/) override {}
  void step(std::string_view /*caption*/) override {}
  void progress(int /*percent*/) override {}
};

}  // namespace

RunView& CurrentRun::view() const {
  static NobodyWatches nobody;
  return watched_by == nullptr ? nobody : *watched_by;
}

bool CurrentRun::goes_on() {
  stopped = !view().going_on() || stopped;
  return !stopped;
}

RunScope::RunScope(Session& session, RunTerms terms, RunView& view)
    : run_(session.run),
      terms_before_(std::exchange(run_.terms, std::move(terms))),
      view_before_(std::exchange(run_.watched_by, &view)) {}

RunScope::RunScope(Session& session, RunView& view) : RunScope(session, RunTerms(session.run.terms), view) {}

RunScope::~RunScope() {
  run_.terms = std::move(terms_before_);
  run_.watched_by = view_before_;
}

}  // namespace twk::session
