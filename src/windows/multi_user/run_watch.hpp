#pragma once

#include <chrono>
#include <cstddef>
#include <string>
#include <string_view>
#include <vector>

#include "batch/run_controls.hpp"

/// What the multi-user window shows of a run over its selection: how far it is, how long it will last, and
/// who failed, each as soon as it is known.
namespace twk::windows {

struct Desktop;

class RunWatch {
 public:
  /// The number of users is that of the preview; without one it is not known. `start` begins the run again.
  RunWatch(Desktop& session, void (*start)(Desktop&));
  RunWatch(const RunWatch&) = delete;
  RunWatch& operator=(const RunWatch&) = delete;

  /// For the run, which must end before this does.
  [[nodiscard]] batch::RunHooks hooks();
  /// A row of the log tab by which the run can be taken back: "Disabled: 3 users". None when nothing can be.
  void log(std::string_view what);

 private:
  void take(const batch::UserOutcome& outcome);

  Desktop& session_;
  std::chrono::steady_clock::time_point begun_ = std::chrono::steady_clock::now();
  std::size_t users_ = 0;
  std::size_t seen_ = 0;
  std::vector<batch::AccountChange> changes_;
};

/// "12 of 822, 1 failed, about 2 minutes left"; without a known number of users "12 done".
std::string pace_text(std::size_t seen, std::size_t users, std::size_t failed, std::chrono::seconds elapsed);

/// "Retry the Failed Ones": they become the selection, and the run begins again with its preview.
void retry_failed_Click(Desktop& session);

}  // namespace twk::windows
