#pragma once

#include <cstdint>
#include <memory>
#include <utility>

namespace twk::local {

/// When those who keep a file's contents in memory look whether others changed it: at each use, or during a
/// turn (the work on one user, say) once. A write looks in any case, under its lock.
class Turn {
 public:
  /// Turns nest; the outermost counts.
  void begin() { number_ += depth_++ == 0 ? 1U : 0U; }
  void end() { --depth_; }

  /// True when it is time to look at something. `seen` is of whoever asks, 0 at first: the turn in which it
  /// was last told so.
  [[nodiscard]] bool is_due(std::uint64_t& seen) const {
    return depth_ == 0 || std::exchange(seen, number_) != number_;
  }

 private:
  std::uint64_t number_ = 0;
  int depth_ = 0;
};

using TurnPtr = std::shared_ptr<Turn>;

}  // namespace twk::local
