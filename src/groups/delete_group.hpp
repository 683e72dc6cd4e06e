#pragma once

#include <string>

#include "groups/group_object.hpp"

namespace twk::groups {

/// Asks whether to delete the group.
bool confirm_deletion(session::Session& session, const std::string& name);

/// Deletes the group, returns the members to the other users and takes its row out of the lists of the
/// domain. A failure is reported in a box and leaves the lists as they are.
GroupOutcome delete_group(session::Session& session, const GroupRow& group);

}  // namespace twk::groups
