#pragma once

#include <exception>

#include "app/command_line.hpp"

namespace twk::app {

/// The program from start to end, in an existing application: checks for another instance and the screen
/// size, opens the lab (or lets the person choose one), starts the session behind the splash, shows the main
/// window and the tip of the day, and returns the exit code.
int run(const Options& options);

/// Handles a failure that no routine trapped under "/DEBUG": shows its description and ends the program at
/// once with exit code 70. What was written to the directory and to files stays.
[[noreturn]] void end_on_failure(const std::exception& failure);

}  // namespace twk::app
