#pragma once

#include <optional>
#include <string>

namespace twk::cli {

struct GlobalOptions;

/// The password for the logon to a real domain: from the file that --logon-password-file names (a descriptor
/// as "/dev/fd/N"), from the environment, or typed at the terminal without echo. None when there is
/// none. Raises `BadInput` for a file without one.
std::optional<std::string> logon_password(const GlobalOptions& options, const std::string& user);

/// The value of TWK_LOGON_PASSWORD, removed from the environment so that no program started from here gets
/// it.
std::optional<std::string> take_password_of_environment();

}  // namespace twk::cli
