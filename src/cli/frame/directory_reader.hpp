#pragma once

#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "cli/terminal/output.hpp"
#include "directory/account_fields.hpp"
#include "platform/platform.hpp"

/// Users and groups in the form the commands print, read through the directory services, in Active Directory
/// and in WinNT domains.
namespace twk::cli {

/// The domain to query.
using Domain = directory::AccountDomain;

/// "DC=twk,DC=test".
std::string domain_dn(const Domain& domain);

/// Users with name, fullName, description, disabled, dn, sorted by name; those of one OU and below it when
/// `ou` is a distinguished name. Raises `Refused` when there is no such OU.
std::vector<Json> list_users(const Domain& domain, std::string_view ou);
/// How many there are.
std::size_t count_users(const Domain& domain);
/// Everything `user show` prints about the user of that account name, common name, principal name or
/// distinguished name. Raises `Refused` when there is none, or more than one.
Json describe_user(const Domain& domain, std::string_view name);
/// The distinguished name of that user; in a WinNT domain the account name.
std::string locate_user(const Domain& domain, std::string_view name);
/// The same without the near names, which require a walk through all users: nothing when there is no such
/// user.
std::optional<std::string> find_user(const Domain& domain, std::string_view name);
/// The object of that user, for changes.
platform::ObjectPtr bind_user(const Domain& domain, std::string_view name);

/// The distinguished name of the group of that account name, common name or distinguished name; in a WinNT
/// domain its name. Raises `Refused` when there is none, or more than one.
std::string locate_group(const Domain& domain, std::string_view name);
/// Groups with name, kind, scope, description, dn, sorted by name.
std::vector<Json> list_groups(const Domain& domain);
std::size_t count_groups(const Domain& domain);
/// The same for one group with its members, including those by primary group.
Json describe_group(const Domain& domain, std::string_view name);

/// The distinguished names of the organizational units; none in a WinNT domain.
std::vector<std::string> list_ous(const Domain& domain);
/// The distinguished name of the OU or container as the directory spells it. Raises `Refused` with the
/// nearest names when there is none.
std::string locate_ou(const Domain& domain, std::string_view dn);
/// The same for a place that accounts can be moved to: raises `Refused` also for the domain itself.
std::string locate_unit(const Domain& domain, std::string_view dn);

}  // namespace twk::cli
