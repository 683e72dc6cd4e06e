#include "session/session.hpp"

#include "base/text.hpp"

namespace twk::session {

Session::Session(const platform::Platform& services, std::string_view command_line_text,
                 std::string_view program_directory_text)
    : platform(services), command_line(command_line_text), program_directory(program_directory_text) {}

bool is_debug(const Session& session) {
  return base::upper(session.command_line) == "/DEBUG";
}

bool logs_load(const Session& session) {
  return is_debug(session) || base::upper(session.command_line) == "/DEBUG1";
}

}  // namespace twk::session
