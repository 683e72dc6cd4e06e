#pragma once

#include <cstdint>
#include <string>

namespace twk::session {
struct Session;
}

/// Limiting the session to one OU.
namespace twk::windows {

/// The command of the menu, on a selected OU: opens the window `Select_OU` for it, or lifts the limit while
/// there is one and loads the whole domain.
void Manage_OU(session::Session& session);

/// OK in the window: the selected OU becomes the limit from the next load on, stored for the person or the
/// machine.
void Select_OU_OK_Click(session::Session& session);

/// Limits the sessions of the person, or of everyone on this machine, to an OU from the next load on: `hive`
/// says where that is stored.
void limit_to_ou(session::Session& session, const std::string& distinguished_name, bool sub_ous,
                 std::uint32_t hive);
/// Restores the whole domain from the next load on, wherever the limit is stored.
void lift_limit(session::Session& session);

}  // namespace twk::windows
