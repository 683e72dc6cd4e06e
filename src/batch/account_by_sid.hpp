#pragma once

#include <string>

#include "platform/directory.hpp"

namespace twk::session {
struct Session;
}

namespace twk::batch {

/// The account of that identifier in Active Directory, wherever it is by now; none when it is gone, and in a
/// WinNT domain, where nobody can be found that way.
platform::ObjectPtr account_by_sid(session::Session& session, const std::string& sid);

}  // namespace twk::batch
