#pragma once

#include <string_view>

#include "session/account_windows.hpp"

namespace twk::session {
struct Session;
}

namespace twk::lifecycle {

/// Removes a user and what belongs to the account, in this order: shares, mailbox, account, folders; then the
/// command. Which steps run is chosen on the "Delete Users" tab of the multi-user window and by the flags of
/// `session.runs`; nothing runs while `Delete_Running` is not set. `UserKey` is the account's name in a WinNT
/// domain, otherwise its LDAP path.
///
/// True when the account itself was deleted. Log, log tab and `Label3` report the rest.
bool Delete_One_User(session::Session& session, std::string_view UserKey);

}  // namespace twk::lifecycle
