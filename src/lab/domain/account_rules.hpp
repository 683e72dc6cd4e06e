#pragma once

#include <string>
#include <string_view>
#include <vector>

#include "ads/ads_path.hpp"
#include "ads/schema.hpp"
#include "ads/staged_values.hpp"
#include "lab/domain/lab_domain.hpp"
#include "lab/store/entry_store.hpp"

/// Which values the attributes of accounts accept, and what the directory makes of them.
namespace twk::lab {

inline constexpr std::int32_t kDomainUsersRid = 513;
inline constexpr std::string_view kNeverExpires = "9223372036854775807";

/// The stored form of changes to `entry` (none: a new object) of class `object_class`.
///
/// "userAccountControl" keeps its kind of account, and through LDAP the "cannot change password" bit as it is
/// stored; "pwdLastSet" takes 0 (must change) and -1 (now); "lockoutTime" takes 0 and forgets wrong
/// passwords; "groupType" carries its "sAMAccountType". Raises kNoSuchAttribute, kConstraint, kUnwilling for
/// what only the directory itself writes.
std::vector<Modification> to_modifications(const LabDomain& domain, const Entry* entry,
                                           std::string_view object_class, ads::Provider provider,
                                           const std::vector<ads::StagedChange>& changes);

/// The stored form of one change. Raises kConstraint for a value that the attribute does not take, and for
/// several where it holds one.
Modification to_modification(const Entry* entry, const ads::AttributeSchema& attribute,
                             const ads::StagedChange& change);

/// The moment, as the directory counts time.
std::string filetime_now(const LabDomain& domain);
/// "sAMAccountType" of a group of this type.
std::string group_account_type(std::int32_t bits);

}  // namespace twk::lab
