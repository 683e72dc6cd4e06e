#include "session/current_run.hpp"

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

}  // namespace twk::session
