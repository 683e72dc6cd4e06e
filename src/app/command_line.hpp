#pragma once

#include <optional>
#include <string>

#include "world/connection_options.hpp"

namespace twk::app {

/// What the desktop program is started with.
struct Options {
  std::string lab;       ///< folder of the lab; empty: a real domain, or the person chooses
  std::string database;  ///< database directory of this run; empty: the settings' own
  std::string
      command_line;  ///< what the session takes for the rest of the line: "/DEBUG", "/DEBUG1" or empty
  world::ConnectionOptions connection;  ///< what the line says of a real domain
};

/// Exit codes beside 0, those of <sysexits.h> that apply.
inline constexpr int kExitUsage = 64;
inline constexpr int kExitBadData = 65;
inline constexpr int kExitFault = 70;
inline constexpr int kExitNotPermitted = 77;

/// Answers what needs no screen, "--help" and "--version", and says when there is no screen at all. Gives the
/// exit code when the program is to end.
std::optional<int> answer_without_screen(int argc, char** argv);

/// Parses what the toolkit has left of the command line: options, or one of the switches "/DEBUG" and
/// "/DEBUG1", in any case, as the only word. Without --lab, and without an option that names a real domain,
/// the environment's TWK_LAB names the lab. Gives the exit code when the program is to end; the reason stands
/// on standard error then.
std::optional<int> parse(int argc, char** argv, Options& options);

}  // namespace twk::app
