#pragma once

#include <cstddef>
#include <string>

#include "groups/group_object.hpp"

namespace twk::groups {

/// A group that was read, besides the rows of its users.
struct GroupDetails {
  std::string failure;  ///< why it could not be read; empty when it was
  std::string comment = {};
  std::size_t users = 0;   ///< members that have a row
  std::size_t others = 0;  ///< groups, contacts, and users that were not loaded
};

/// Reads the group and moves its users to `Members`, those by primary group among them and marked. One that
/// cannot be read leaves `Members` empty.
GroupDetails show_group(session::Session& session, const GroupRow& group);

}  // namespace twk::groups
