#pragma once

#include <string>

namespace twk::session {
struct Session;
}

namespace twk::resources {

/// The server to ask for accounts: the controller in a WinNT domain, none (this machine asks its own)
/// in Active Directory or when no controller is found.
std::string server_for_accounts(session::Session& session);
/// The server to ask for an account that another one does not know: the session's controller in
/// Active Directory, in a WinNT domain the one that the person logged on to.
std::string fallback_server(const session::Session& session);

}  // namespace twk::resources
