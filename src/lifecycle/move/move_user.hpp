#pragma once

#include <string_view>

namespace twk::session {
struct Session;
}

namespace twk::lifecycle {

/// What became of a user who was to be moved.
enum class MoveOutcome {
  kNotMoved,           ///< the account is as it was, and so is its data
  kMovedWithWarnings,  ///< the account has its new paths, but not all was done that was asked for
  kMoved
};

/// Takes a user to the site and template that are chosen on the "Move Users" tab of the multi-user window:
/// new folders and shares, the data moved or copied into them or left, then the account's paths, groups and
/// logon script, and the command. `UserKey` is the account's name in a WinNT domain, its LDAP path else.
///
/// What can be found out beforehand is, and refused before anything is changed. Data that was not copied
/// whole, by a failure or a Cancel, stays with its share where it is, and the account keeps its paths unless
/// `runs.new_paths_anyway` wants otherwise; new folders and shares that were made until then stay. The same
/// move, run again, takes up what was left. Log and log tab tell the outcome: a "RED" row for a user who was
/// not moved, "YELLOW" for warnings, none when a question was answered No.
MoveOutcome Move_One_User(session::Session& session, std::string_view UserKey);

}  // namespace twk::lifecycle
