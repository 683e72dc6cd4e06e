#pragma once

#include "session/preferences.hpp"

namespace twk::session {
struct Form1;
}

namespace twk::windows {

/// What the Mail tab of the set-up says about the logon to an Exchange 5.5 server.
session::MailAdministrator mail_administrator(const session::Form1& form);

}  // namespace twk::windows
