#pragma once

#include <optional>
#include <string>

#include "world/connection_options.hpp"

namespace twk::app {

/// The desktop program's command line.
struct Options {
  std::string lab;           ///< folder of the lab; empty: a real domain, or the person chooses
  std::string database;      ///< database directory of this run; empty: from the settings
  std::string command_line;  ///< the rest of the line, for the session: "/DEBUG", "/DEBUG1" or empty
  world::ConnectionOptions connection;  ///< what the line says about a real domain
};

/// Exit codes besides 0, those of <sysexits.h> that apply.
inline constexpr int kExitUsage = 64;
inline constexpr int kExitBadData = 65;
inline constexpr int kExitFault = 70;
inline constexpr int kExitNotPermitted = 77;

/// Handles what needs no screen, "--help" and "--version", and reports a missing screen. Returns the exit
/// code when the program should end.
std::optional<int> answer_without_screen(int argc, char** argv);

/// Parses what the toolkit left of the command line: options, or one of the switches "/DEBUG" and
/// "/DEBUG1", in any case, as the only word. Without --lab, and without an option that names a real domain,
/// the environment's TWK_LAB names the lab. Returns the exit code when the program should end, with the
/// reason on standard error.
std::optional<int> parse(int argc, char** argv, Options& options);

}  // namespace twk::app
