#include "session/session.hpp"

#include "base/text.hpp"
#include "session/loaded_database.hpp"
#include "session/loaded_domain.hpp"

namespace twk::session {

struct Session::Loaded {
  LoadedDomain domain;
  LoadedDatabase database;
  controls::StatusBar status;
  controls::ListView log_rows;
};

Session::Session(const platform::Platform& services, std::string_view command_line_text,
                 std::string_view program_directory_text)
    : loaded_(std::make_unique<Loaded>()),
      platform(services),
      command_line(command_line_text),
      program_directory(program_directory_text),
      domain(loaded_->domain),
      database(loaded_->database),
      status(loaded_->status),
      log_rows(loaded_->log_rows),
      log(platform, dbpath, log_rows) {}

Session::~Session() = default;

bool is_debug(const Session& session) {
  return base::upper(session.command_line) == "/DEBUG";
}

bool logs_load(const Session& session) {
  return is_debug(session) || base::upper(session.command_line) == "/DEBUG1";
}

}  // namespace twk::session
