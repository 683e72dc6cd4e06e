#pragma once

namespace twk::cli {

/// Reads the command line, runs the command and gives the exit code of the program. Every failure ends here,
/// with a message on standard error.
int run_command_line(int argc, char** argv);

}  // namespace twk::cli
