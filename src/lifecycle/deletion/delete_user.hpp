#pragma once

#include <string_view>

#include "session/account_windows.hpp"

namespace twk::session {
struct Session;
}

namespace twk::lifecycle {

/// Removes a user and what hangs on the account, in this order: shares, mailbox, account, folders; then the
/// command. What runs is chosen on the "Delete Users" tab of the multi-user window and by the flags of
/// `session.runs`; nothing runs while `Delete_Running` is not set. `UserKey` is the account's name in a WinNT
/// domain, its LDAP path else.
///
/// True when the account itself was deleted. Log, log tab and `Label3` tell what became of the rest.
bool Delete_One_User(session::Session& session, std::string_view UserKey);

}  // namespace twk::lifecycle
