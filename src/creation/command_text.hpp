#pragma once

#include <string>

namespace twk::session {
struct Session;
}

namespace twk::creation {

/// The user a command is run for.
struct CommandUser {
  std::string account;
  std::string first;
  std::string middle;
  std::string last;
};

/// An administrator's command with its tags expanded: the fields of the import line, the built-in names, the
/// name tags, the variables of the loaded template.
std::string command_text(session::Session& session, std::string command, const CommandUser& user);

}  // namespace twk::creation
