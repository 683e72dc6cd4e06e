#pragma once

#include <cstdint>
#include <string_view>

namespace twk::platform {

/// Starts programs of the workstation.
class Process {
 public:
  virtual ~Process() = default;

  /// Splits the command line into words (blanks separate, double quotes hold a word together) and runs it
  /// directly: no shell looks at it, so nothing in it is expanded. With `wait` it returns when the program
  /// has ended, whatever its exit code, and gives 1; without, it gives the process number. 0 when it could
  /// not be started. `window_style` 0 asks for no window: standard output and error go nowhere.
  virtual std::int32_t run(std::string_view command_line, bool wait, std::int16_t window_style) = 0;
};

}  // namespace twk::platform
