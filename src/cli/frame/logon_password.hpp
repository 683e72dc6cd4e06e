#pragma once

#include <optional>
#include <string>

namespace twk::cli {

struct GlobalOptions;

/// The password of who logs on to a real domain: from the file that --logon-password-file names (a descriptor
/// as "/dev/fd/N"), from what the environment had, or typed at the terminal and not echoed. None
/// when nobody gives one. Raises `BadInput` for a file without one.
std::optional<std::string> logon_password(const GlobalOptions& options, const std::string& user);

/// What TWK_LOGON_PASSWORD holds, taken out of the environment so that no program started from here has it.
std::optional<std::string> take_password_of_environment();

}  // namespace twk::cli
