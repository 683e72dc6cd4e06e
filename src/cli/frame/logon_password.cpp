#include "cli/frame/logon_password.hpp"

#include <unistd.h>

#include <cstdlib>

#include "cli/frame/global_options.hpp"
#include "cli/terminal/console_dialogs.hpp"
#include "cli/terminal/display.hpp"
#include "cli/terminal/input.hpp"

namespace twk::cli {
namespace {

constexpr const char* kVariable = "TWK_LOGON_PASSWORD";

}  // namespace

std::optional<std::string> take_password_of_environment() {
  const char* const value = std::getenv(kVariable);  // NOLINT(concurrency-mt-unsafe): one thread
  if (value == nullptr)
    return std::nullopt;
  std::string password = value;
  unsetenv(kVariable);  // NOLINT(concurrency-mt-unsafe): one thread
  return password;
}

std::optional<std::string> logon_password(const GlobalOptions& options, const std::string& user) {
  if (!options.logon_password_file.empty())
    return read_password(options.logon_password_file);
  if (options.logon_password)
    return options.logon_password;
  if (options.no_input || !is_terminal(STDIN_FILENO) || !is_terminal(STDERR_FILENO))
    return std::nullopt;
  return read_typed_line("Password of " + user + ":", true);
}

}  // namespace twk::cli
