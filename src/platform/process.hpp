#pragma once

#include <cstdint>
#include <string>
#include <vector>

namespace twk::platform {

/// How a program began, and how it ended where it was waited for.
struct ProgramResult {
  std::int32_t number =
      0;  ///< 1 for a program that was waited for, else its process number; 0 when it did not start
  std::string failure = {};  ///< why it did not start, or how it failed; empty when all is well
};

/// Starts programs of the workstation.
class Process {
 public:
  virtual ~Process() = default;

  /// Why a program cannot be started, without a try; empty when nothing speaks against it.
  virtual std::string cannot_start(const std::vector<std::string>& words) = 0;

  /// Runs the program that the first word names with the others as its arguments, each to the letter: no
  /// shell looks at them. With `wait` it returns when the program has ended; an exit code that is not 0, or a
  /// signal, is its failure. The program reads nothing, and what it says goes to standard error; with
  /// `window_style` 0 (no window) it goes nowhere. Secrets of the environment are kept from it.
  virtual ProgramResult run(const std::vector<std::string>& words, bool wait, std::int16_t window_style) = 0;
};

}  // namespace twk::platform
