#pragma once

#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "lab/domain/lab_domain.hpp"
#include "platform/security.hpp"

/// Accounts by their identifiers: those of the domain, those that every server knows, those of one server.
namespace twk::lab {

/// Looks an account up on a server, as `platform::Security::LookupAccountName` describes. A server that is
/// not a member of the domain knows only its own accounts and the well-known ones.
platform::AccountSid look_up_account(LabDomain& domain, std::string_view server, std::string_view account);

/// "TWK\jo", "Everyone"; the identifier's text when it is unknown there.
std::string account_text(LabDomain& domain, std::string_view server, const platform::Sid& sid);

/// The identifiers that a logon of the account has: its own, those of its groups at any depth, "Everyone" and
/// "Authenticated Users".
std::vector<platform::Sid> logon_identifiers(LabDomain& domain, const platform::Sid& account);

}  // namespace twk::lab
