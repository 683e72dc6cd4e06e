#pragma once

#include <string>
#include <vector>

#include "directory/account_fields.hpp"

namespace twk::session {
struct Session;
}

/// An account in Active Directory: the LDAP object, and the WinNT object for what only that one has.
namespace twk::directory {

/// Fills `LoadedDomain::own_groups` with the primary group and the groups of the user. Raises what the
/// directory raises.
void Read_AD_User_Groups(session::Session& session, const platform::ObjectPtr& user);

/// Writes the changed parts, all in one request; when that is refused, field by field. What the directory
/// does not take goes to `refused`. False for a wrong drive letter; raises what the directory raises when
/// nothing went through.
bool Save_AD_User(session::Session& session, const UserChange& change, std::vector<std::string>& refused);

}  // namespace twk::directory
