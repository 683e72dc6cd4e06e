#pragma once

#include <functional>

#include "batch/run_controls.hpp"

/// What the run over the selection and the run over a file have in common.
namespace twk::batch {

/// Looks the property up and clears the counts. False when no property is chosen, or one that the schema does
/// not know; `Label3` and `failure` tell that.
bool begin_run(session::Session& session);
/// The window while such a run is under way: `CHANGE_AD` is the button that stops it, and the bar shows how
/// far it is.
class PropertyRun {
 public:
  explicit PropertyRun(session::Session& session);
  PropertyRun(const PropertyRun&) = delete;
  PropertyRun& operator=(const PropertyRun&) = delete;
  ~PropertyRun();

 private:
  RunningWindow window_;
  controls::Observable<bool>& bar_;
};
void show_progress(session::Session& session, std::size_t done, std::size_t all);
/// Lets a press of Cancel in; true when there was one.
bool is_cancelled(session::Session& session);

/// One block of the log: the head, what `changes` does, and the closing texts with the counts since it began.
/// What `changes` raises is logged, told in `failure` and on the log tab, and makes it False.
bool in_change_block(session::Session& session, const std::function<void()>& changes);

}  // namespace twk::batch
