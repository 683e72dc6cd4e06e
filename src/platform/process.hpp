#pragma once

#include <cstdint>
#include <string>
#include <vector>

namespace twk::platform {

/// How a program began, and how it ended where it was waited for.
struct ProgramResult {
  std::int32_t number =
      0;  ///< 1 for a program that was waited for, otherwise its process number; 0 when it did not start
  std::string failure = {};  ///< why it did not start, or how it failed; empty when all is well
};

/// Starts programs of the workstation.
class Process {
 public:
  virtual ~Process() = default;

  /// Why a program cannot be started, without trying; empty when nothing prevents it.
  virtual std::string cannot_start(const std::vector<std::string>& words) = 0;

  /// Runs the program named by the first word with the others as its arguments, exactly as they are: no
  /// shell sees them. With `wait` it returns when the program has ended; an exit code that is not 0, or a
  /// signal, is its failure. The program gets no input, and its output goes to standard error, or
  /// nowhere with `window_style` 0 (no window). Secrets in the environment are withheld from it.
  virtual ProgramResult run(const std::vector<std::string>& words, bool wait, std::int16_t window_style) = 0;
};

}  // namespace twk::platform
