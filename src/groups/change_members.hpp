#pragma once

#include <cstdint>
#include <span>
#include <string>
#include <vector>

#include "groups/group_object.hpp"

namespace twk::groups {

/// A user who could not be moved, and why.
struct RefusedMember {
  std::string key;           ///< of the row
  std::uint32_t number = 0;  ///< of the runtime error; 0 for the primary group, which cannot be left
  std::string reason;
};

/// What became of a change of members.
struct MembersOutcome {
  bool bound = false;    ///< false when the group could not be bound, and nobody was changed
  std::string text;      ///< the number of members, or the first reason
  std::string not_kept;  ///< why the directory may not have kept what was changed; empty when it has
  std::vector<RefusedMember> refused;
  std::vector<std::string> changed;  ///< the keys of the rows of those who really joined or left
};

/// Adds users of `NotMembers` to the group that is shown, or removes users of `Members` from it, from the
/// last row to the first. `users` are the keys of their rows, in any order. Who was changed moves to the
/// other list; a refused user stays where it is. A user's primary group cannot be left, as a box reports, and
/// so is a group that cannot be bound.
MembersOutcome add_members(session::Session& session, const GroupRow& group,
                           std::span<const std::string> users);
MembersOutcome remove_members(session::Session& session, const GroupRow& group,
                              std::span<const std::string> users);

}  // namespace twk::groups
