#pragma once

#include <functional>

#include "batch/run_controls.hpp"

/// What the run over the selection and the run over a file share.
namespace twk::batch {

/// Looks the property up and clears the counts. False when no property is chosen, or one that the schema does
/// not know; `Label3` and `failure` say so.
bool begin_run(session::Session& session);
/// The window during such a run: `CHANGE_AD` stops it, and the bar shows its
/// progress.
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
/// Lets Cancel be pressed; true when it was.
bool is_cancelled(session::Session& session);

/// One block of the log: the head, what `changes` does, and the closing texts with the counts since it began.
/// A failure of `changes` is logged, put into `failure` and on the log tab, and returns False.
bool in_change_block(session::Session& session, const std::function<void()>& changes);

}  // namespace twk::batch
