#include "lab/domain/group_rules.hpp"

#include <algorithm>
#include <string>

#include "lab/domain/entry_view.hpp"
#include "lab/domain/membership.hpp"
#include "lab/store/errors.hpp"
#include "platform/group_type.hpp"

namespace twk::lab {
namespace {

namespace group_type = platform::group_type;

constexpr std::int32_t kScopes = group_type::kGlobal | group_type::kLocal | group_type::kUniversal;

// The texts are those of [MS-ERREF] 2.2 for 8513 to 8521.
constexpr const char* kInvalidType = "The specified group type is invalid.";
constexpr const char* kUniversalInGlobal = "A global group cannot have a universal group as a member.";
constexpr const char* kLocalInUniversal = "A universal group cannot have a local group as a member.";
constexpr const char* kPrimaryMembers =
    "A group with primary members cannot change to a security-disabled group.";

std::int32_t type_of(const Entry& group) {
  return static_cast<std::int32_t>(read_number(group, "groupType"));
}

/// True when one of the groups that a link of the entry names has that scope.
bool has_linked(const LabDomain& domain, const Entry& group, std::string_view link, std::int32_t scope) {
  const std::vector<std::string> names = group.values(link);
  return std::any_of(names.begin(), names.end(), [&](const std::string& name) {
    const Entry* const other = domain.store.find(name);
    return other != nullptr && has_class(*other, "group") && (type_of(*other) & scope) != 0;
  });
}

/// Why the scope cannot become that one; null when it can.
const char* refusal(const LabDomain& domain, const Entry& group, std::int32_t before, std::int32_t after) {
  if (before == group_type::kGlobal && after == group_type::kUniversal)
    return has_linked(domain, group, "memberOf", group_type::kGlobal) ? kUniversalInGlobal : nullptr;
  if (before == group_type::kUniversal && after == group_type::kGlobal)
    return has_linked(domain, group, "member", group_type::kUniversal) ? kUniversalInGlobal : nullptr;
  if (before == group_type::kLocal && after == group_type::kUniversal)
    return has_linked(domain, group, "member", group_type::kLocal) ? kLocalInUniversal : nullptr;
  return before == group_type::kUniversal && after == group_type::kLocal ? nullptr : kInvalidType;
}

}  // namespace

void check_group_type(const LabDomain& domain, const Entry& group, std::int32_t wanted) {
  const std::int32_t before = type_of(group);
  if (before == wanted)
    return;
  if ((before & group_type::kBuiltin) != 0 || domain.config.kind != DomainKind::kNative)
    raise(ads_error::kUnwilling, kInvalidType);
  const std::int32_t old_scope = before & kScopes;
  const std::int32_t new_scope = wanted & kScopes;
  if (old_scope != new_scope) {
    if (const char* const why = refusal(domain, group, old_scope, new_scope))
      raise(ads_error::kUnwilling, why);
  }
  const bool loses_security = (before & ~wanted & group_type::kSecurity) != 0;
  if (loses_security && !members_by_primary_group(domain, group).empty())
    raise(ads_error::kUnwilling, kPrimaryMembers);
}

}  // namespace twk::lab
