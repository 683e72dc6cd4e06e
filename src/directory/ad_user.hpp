#pragma once

#include <cstddef>
#include <string_view>

#include "platform/directory.hpp"

namespace twk::session {
struct Session;
}

/// The account of the user details tab in Active Directory: the LDAP object, and the WinNT object for what
/// only that one has.
namespace twk::directory {

/// Fills the tab from the object at `path`; an attribute without a value leaves its field as it was. The
/// groups are read last, and their errors are raised. False, with the reason in panel 1, when the object
/// cannot be bound.
bool Read_AD_User(session::Session& session, std::string_view path);
/// Fills `ListView4` with the primary group and the groups of the user. Raises what the directory raises.
bool Read_AD_User_Groups(session::Session& session, const platform::ObjectPtr& user);
/// Writes the groups of fields that were changed to the account whose path is in `USERID_W2K`. False, with
/// the reason in panel 1, for a wrong drive letter, when nothing is written, and for a refusal by the
/// directory, when what was written before stays. A refused expiry or custom attribute shows a box, and the
/// rest is saved.
bool Save_AD_User(session::Session& session);
/// Add the account to the group of a row of `ListView3`, and remove it from the group of a row of
/// `ListView4`. Rows count from 0. Raise what the directory raises.
bool Add_AD_User_Group(session::Session& session, std::size_t row);
bool Remove_AD_User_Group(session::Session& session, std::size_t row);

}  // namespace twk::directory
