#pragma once

#include <cstddef>
#include <string_view>

#include "platform/directory.hpp"

namespace twk::session {
struct Session;
}

/// The account of the user details tab in a WinNT domain.
namespace twk::directory {

/// Fills the tab from the account. False, with the reason in panel 1, when that fails.
bool Read_NT_User(session::Session& session, std::string_view name);
/// Fills `ListView4` with the groups of the user and shows the primary one in panel 2. Raises what the
/// directory raises.
bool Read_NT_User_Groups(session::Session& session, const platform::ObjectPtr& user);
/// Writes every field to the account named in `USERID`. False, with the reason in panel 1, for a wrong drive
/// letter or expiry, when nothing is written, and for a refusal, when what was written before stays.
bool Save_NT_User(session::Session& session);
/// As in Active Directory, by the text of the row.
bool Add_NT_User_Group(session::Session& session, std::size_t row);
bool Remove_NT_User_Group(session::Session& session, std::size_t row);

}  // namespace twk::directory
