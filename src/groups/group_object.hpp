#pragma once

#include <string>
#include <string_view>

#include "platform/directory.hpp"

namespace twk::controls {
struct ListRow;
}
namespace twk::session {
struct Session;
}

/// What the operations on groups share.
namespace twk::groups {

/// A group as the lists of the domain hold it.
struct GroupRow {
  std::string key;
  std::string name;
};
/// The group of a row.
GroupRow group_of(const controls::ListRow& row);

/// What became of the making or the deletion of a group.
struct GroupOutcome {
  std::string_view light;  ///< empty when it was refused before anything was tried
  std::string text;        ///< what was done, or why it was not; empty for a group without a name
};

/// Binds the group: by its name in a WinNT domain, otherwise by its key.
platform::ObjectPtr bind_group(session::Session& session, const GroupRow& group);
/// The path of a user's row, as required by a group's `Add` and `Remove`.
std::string member_path(const session::Session& session, const controls::ListRow& row);
/// True for a user; a group's members may also be groups, contacts and computers.
bool is_user(const platform::DirectoryObject& member);

/// Moves all rows of `Members` back to `NotMembers`: no group is shown.
void give_members_back(session::Session& session);

/// Adds or removes the group's row in each list of the domain that holds groups.
void add_group_rows(session::Session& session, const GroupRow& group, const std::string& type, bool global);
void remove_group_rows(session::Session& session, const std::string& key);

}  // namespace twk::groups
