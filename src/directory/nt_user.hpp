#pragma once

#include "directory/account_fields.hpp"

namespace twk::session {
struct Session;
}

/// An account in a WinNT domain.
namespace twk::directory {

/// Fills `LoadedDomain::own_groups` with the groups of the user and shows the primary one in panel 2. Raises
/// what the directory raises.
void Read_NT_User_Groups(session::Session& session, const platform::ObjectPtr& user);

/// Writes every field. False for a wrong drive letter; raises for a wrong expiry, when nothing is written,
/// and what the directory raises, when what was written before stays.
bool Save_NT_User(session::Session& session, const UserChange& change);

}  // namespace twk::directory
