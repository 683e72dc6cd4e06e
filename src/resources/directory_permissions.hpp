#pragma once

#include <cstdint>
#include <string>

namespace twk::session {
struct Session;
}

namespace twk::resources {

/// Gives a directory the access list and the owner that "Permissions.dat" prescribes for a user. False for a
/// table without rows or one that cannot be read; otherwise True, whatever the outcome of rows and owner: a
/// refusal beeps, is logged with the reason and sets `RunWarning` to 2. `server` is asked for the accounts; a
/// look-up that fails there replaces it.
bool Set_Permissions(session::Session& session, std::string& server, const std::string& path,
                     const std::string& userName, std::int16_t& RunWarning);

}  // namespace twk::resources
