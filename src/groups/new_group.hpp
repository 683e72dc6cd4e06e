#pragma once

#include <string>

#include "groups/group_object.hpp"

namespace twk::groups {

enum class GroupKind { kSecurity, kDistribution };
enum class GroupScope { kDomainLocal, kGlobal, kUniversal };

/// A group to make. Kind and scope count in an Active Directory domain; a WinNT domain makes global groups.
struct NewGroup {
  std::string name;
  std::string description = {};
  GroupKind kind = GroupKind::kSecurity;
  GroupScope scope = GroupScope::kGlobal;
};

/// Whether the loaded domain has groups of that scope, that kind.
bool has_scope(const session::Session& session, GroupScope scope);
bool has_kind(const session::Session& session, GroupKind kind);

/// Makes the group in the domain, or in an Active Directory domain in the managed OU or in "CN=Users", and
/// adds it to the lists of the domain. A blank name does nothing; a refusal is reported in a box.
GroupOutcome create_group(session::Session& session, const NewGroup& order);

}  // namespace twk::groups
