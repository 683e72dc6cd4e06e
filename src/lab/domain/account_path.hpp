#pragma once

#include <string>
#include <string_view>

#include "ads/ads_path.hpp"
#include "lab/domain/lab_domain.hpp"

namespace twk::lab {

/// The DN of the entry that an LDAP, GC or WinNT path refers to; "LDAP://<dns domain>" is the domain's own.
/// Raises kServerDown for a server that is not the lab's and for LDAP in a lab of kind nt, kNoSuchDomain,
/// kNoSuchObject, kUserNotFound, kGroupNotFound, kBadPathname for a path of another kind.
std::string resolve_entry(const LabDomain& domain, const ads::AdsPath& path);
std::string resolve_entry(const LabDomain& domain, std::string_view path);

/// Raises kServerDown when no LDAP server of that name answers.
void require_ldap_server(const LabDomain& domain, std::string_view server);
/// Raises kNoSuchDomain for the name of another domain.
void require_domain(const LabDomain& domain, std::string_view name);

}  // namespace twk::lab
