#pragma once

#include <cstdint>
#include <string>
#include <vector>

#include "platform/process.hpp"

namespace twk::creation {

/// Runs commands of the workstation.
class clsShell {
 public:
  explicit clsShell(platform::Process& process) : process_(process) {}

  /// Runs a command, word by word; with `wait` until it has ended, without a time limit. Window style 0 hides
  /// it, 1 shows it. A runtime failure counts as a failure to start the program.
  platform::ProgramResult Spawn(const std::vector<std::string>& words, bool wait,
                                std::int16_t window_style) const;

 private:
  platform::Process& process_;
};

}  // namespace twk::creation
