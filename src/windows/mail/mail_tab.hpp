#pragma once

#include "session/preferences.hpp"

namespace twk::windows {

struct Form1;

/// What the Mail tab of the set-up says about the logon to an Exchange 5.5 server.
session::MailAdministrator mail_administrator(const Form1& form);

}  // namespace twk::windows
