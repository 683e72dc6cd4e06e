#pragma once

#include <string>

#include "platform/directory.hpp"

namespace twk::controls {
struct ListRow;
}
namespace twk::session {
struct Session;
}

/// What the windows around groups share.
namespace twk::groups {

/// Binds the group of a row of `Groupsfrm.ListView1`: by its name in a WinNT domain, otherwise by its key.
platform::ObjectPtr bind_group(session::Session& session, const controls::ListRow& row);
/// The path of a user's row, as required by a group's `Add` and `Remove`.
std::string member_path(const session::Session& session, const controls::ListRow& row);
/// True for a user; a group's members may also be groups, contacts and computers.
bool is_user(const platform::DirectoryObject& member);

/// Moves all rows of `Members` back to `NotMembers`: no group is shown.
void give_members_back(session::Session& session);
/// Enables the buttons of `Groupsfrm` that have something to work on.
void enable_buttons(session::Session& session);

/// Adds or removes the group's row in each list of the program that shows groups.
void add_group_rows(session::Session& session, const std::string& key, const std::string& name,
                    const std::string& type, bool global);
void remove_group_rows(session::Session& session, const std::string& key);

}  // namespace twk::groups
