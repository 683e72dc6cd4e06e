#pragma once

#include <string_view>

#include "lifecycle/move/move_order.hpp"
#include "session/run_outcome.hpp"

namespace twk::session {
struct Session;
}

namespace twk::lifecycle {

/// Moves a user to a site and a template: new folders and shares, the data moved or copied into them or left,
/// then the account's paths, groups and logon script, and the command. `UserKey` is the account's name in a
/// WinNT domain, otherwise its LDAP path. It is done when the account has its new paths, YELLOW with warnings
/// when not everything requested was done.
///
/// Problems that can be detected in advance are refused before anything is changed. Data that was not copied
/// completely, because of a failure or Cancel, stays with its share where it is, and the account keeps its
/// paths unless `RunTerms::new_paths_anyway` says otherwise; new folders and shares made until then stay. The
/// same move, run again, continues where it ended. Log and log tab show the outcome: a "RED" row for a user
/// who was not moved, "YELLOW" for warnings, none when a question was answered No.
session::RunOutcome Move_One_User(session::Session& session, std::string_view UserKey, const MoveOrder& order,
                                  session::RunView& view);

}  // namespace twk::lifecycle
