#pragma once

#include <optional>
#include <string>
#include <string_view>

#include "groups/group_object.hpp"
#include "groups/new_group.hpp"

/// Changes of an existing group of Active Directory itself. What the directory does not allow, it refuses,
/// and its own words are the outcome.
namespace twk::groups {

/// Gives the group, which is named by its distinguished name, a new common name and account name: both or
/// neither. A name in use is refused before anything is changed. A template that names the group goes on
/// naming the old one: the outcome is then YELLOW and says which.
GroupOutcome rename_group(session::Session& session, const std::string& dn, std::string_view new_name);

/// What is not given stays. Of scopes a directory changes one into the next: between global and domain local
/// the way is through universal, which a caller goes in two steps.
GroupOutcome change_group_type(session::Session& session, const std::string& dn,
                               std::optional<GroupScope> scope, std::optional<GroupKind> kind);

}  // namespace twk::groups
