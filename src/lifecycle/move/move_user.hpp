#pragma once

#include <string_view>

namespace twk::session {
struct Session;
}

namespace twk::lifecycle {

/// The outcome for a user who was to be moved.
enum class MoveOutcome {
  kNotMoved,           ///< the account and its data are unchanged
  kMovedWithWarnings,  ///< the account has its new paths, but not everything requested was done
  kMoved
};

/// Moves a user to the site and template chosen on the "Move Users" tab of the multi-user window:
/// new folders and shares, the data moved or copied into them or left, then the account's paths, groups and
/// logon script, and the command. `UserKey` is the account's name in a WinNT domain, otherwise its LDAP path.
///
/// Problems that can be detected in advance are refused before anything is changed. Data that was not copied
/// completely, because of a failure or Cancel, stays with its share where it is, and the account keeps its
/// paths unless `runs.new_paths_anyway` says otherwise; new folders and shares made until then stay. The same
/// move, run again, continues where it ended. Log and log tab show the outcome: a "RED" row for a user who
/// was not moved, "YELLOW" for warnings, none when a question was answered No.
MoveOutcome Move_One_User(session::Session& session, std::string_view UserKey);

}  // namespace twk::lifecycle
