#pragma once

#include <optional>
#include <string>

#include "world/world.hpp"

namespace twk::cli {

/// The options before the command.
struct GlobalOptions {
  std::string lab;
  bool live = false;  ///< the real domain, whatever lab the environment names
  world::ConnectionOptions connection;
  std::string logon_password_file;            ///< "-" for standard input
  std::optional<std::string> logon_password;  ///< from the environment
  std::string db;
  bool json = false;
  bool yes = false;
  bool no_input = false;
  bool debug = false;
};

}  // namespace twk::cli
