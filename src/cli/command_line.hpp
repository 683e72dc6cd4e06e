#pragma once

namespace twk::cli {

/// Reads the command line, runs the command and returns the program's exit code. Every failure ends here,
/// with a message on standard error.
int run_command_line(int argc, char** argv);

}  // namespace twk::cli
