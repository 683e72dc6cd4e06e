#pragma once

#include <exception>

#include "app/command_line.hpp"

namespace twk::app {

/// The program from its start to its end, in an application that is there: looks for another instance and at
/// the screen, opens the lab (or lets the person choose one), brings the session up behind the splash, shows
/// the main window and the tip of the day, and gives the exit code.
int run(const Options& options);

/// What a failure means that no routine trapped under "/DEBUG": shows its description and ends the program at
/// once with exit code 70. What was written to the directory and to files stays.
[[noreturn]] void end_on_failure(const std::exception& failure);

}  // namespace twk::app
