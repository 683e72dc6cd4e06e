#pragma once

#include <string_view>

namespace twk::session {
struct Session;
}

namespace twk::lifecycle {

/// Takes a user to the site and template that are chosen on the "Move Users" tab of the multi-user window:
/// new folders and shares, the data moved or copied into them or left, then the account's paths, groups and
/// logon script, and the command. `UserKey` is the account's name in a WinNT domain, its LDAP path else.
///
/// True when it ran to the end; False when a question was answered No or a failure stopped it, which log and
/// log tab tell. What was done until then stays; of data that was not copied whole the source stays.
bool Move_One_User(session::Session& session, std::string_view UserKey);

}  // namespace twk::lifecycle
