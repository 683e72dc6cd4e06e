#pragma once

#include <cstdint>
#include <string_view>

namespace twk::platform {
class Process;
}

namespace twk::creation {

/// Runs commands of the workstation.
class clsShell {
 public:
  explicit clsShell(platform::Process& process) : process_(process) {}

  /// Runs a command line; with `wait` until it has ended, without a time limit. Window style 0 hides it, 1
  /// shows it. 0 when it could not be started.
  std::int32_t Spawn(std::string_view command, bool wait, std::int16_t window_style) const;

 private:
  platform::Process& process_;
};

}  // namespace twk::creation
