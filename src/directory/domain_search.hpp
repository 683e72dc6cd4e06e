#pragma once

#include <functional>
#include <string>
#include <string_view>
#include <vector>

#include "directory/account_fields.hpp"
#include "platform/value.hpp"

/// Searches through an Active Directory domain, page by page, with just the attributes that are needed.
namespace twk::directory {

/// The conditions on users and on groups, to stand inside "(&…)".
inline constexpr std::string_view kUserConditions = "(objectCategory=person)(objectClass=user)";
inline constexpr std::string_view kGroupConditions = "(objectCategory=group)(objectClass=group)";

/// The values of the attributes that were asked for, in that order.
using FoundRow = std::vector<platform::Value>;

/// Visits what is at `base_dn` (empty: the domain) and below it, until `visit` returns False. Raises what the
/// directory raises.
void search_domain(const AccountDomain& domain, std::string_view base_dn, const std::string& filter,
                   std::vector<std::string> attributes, const std::function<bool(FoundRow&)>& visit);
/// All of it.
std::vector<FoundRow> search_domain(const AccountDomain& domain, std::string_view base_dn,
                                    const std::string& filter, std::vector<std::string> attributes);

/// "(&(objectCategory=…)…)" with further conditions.
std::string users_with(std::string_view conditions);
std::string groups_with(std::string_view conditions);

/// "LDAP://twk.test/CN=…", of the domain itself without a name.
std::string ldap_path(const AccountDomain& domain, std::string_view dn);

/// A 64-bit number of the directory, which values hold as text; 0 for no value.
std::int64_t number_of(const platform::Value& value);

}  // namespace twk::directory
