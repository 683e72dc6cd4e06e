#pragma once

#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "live/domain/live_domain.hpp"

/// Identifiers of the domain's accounts, from its directory or, without one, its account service.
namespace twk::live {

/// Of a user, group or computer by its bare account name, in any case; of a group of "Builtin" as well. None
/// when the domain has no such account.
std::optional<platform::Sid> find_account_sid(LiveDomain& domain, std::string_view name);
/// The account's bare name; none for an identifier from elsewhere.
std::optional<std::string> find_account_name(LiveDomain& domain, const platform::Sid& sid);
/// The identifiers that a logon of the account has: its own and those of its groups at any depth. None when
/// the domain has no such account.
std::vector<platform::Sid> find_identifiers(LiveDomain& domain, const platform::Sid& sid);

}  // namespace twk::live
