#pragma once

#include <cstddef>
#include <string>
#include <string_view>
#include <vector>

namespace twk::base {
class RuntimeError;
}
namespace twk::session {
struct CommandSetting;
struct Session;
}  // namespace twk::session

namespace twk::lifecycle {

/// Handles a failure that ends a run: shows and logs the two error texts with the number, closes
/// the log, and adds a "RED" row.
void report_stopped(session::Session& session, const base::RuntimeError& failure);

/// Sets the two error texts.
void prepare_failure(session::Session& session, std::string_view status, std::string_view log);

/// Removes a user from the tree and the two lists of users: by key in Active Directory, otherwise by text.
void remove_from_views(session::Session& session, std::string_view key);

/// Runs the words of a command and logs them. False, with the reason in the log and a beep, when it could not
/// be started or failed.
bool run_account_command(session::Session& session, std::string_view label,
                         const std::vector<std::string>& words, const session::CommandSetting& command,
                         std::string_view failure);

}  // namespace twk::lifecycle
