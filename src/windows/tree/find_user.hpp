#pragma once

#include <string>
#include <string_view>

/// Finding a user: in Active Directory through the window `frmFindW2KUser`, in a WinNT domain in the tree.
namespace twk::windows {

struct Desktop;

/// The command of the toolbar.
void Find_User(Desktop& session);

/// The same in a unit of Active Directory and below.
void find_user_in(Desktop& session, const std::string& unit);

/// Asks for a name and walks the tree's users for those that contain it, in any case; goes on to the next as
/// long as the person wants.
void Find_NT_User(Desktop& session);

/// Empties the window before it is shown; what was typed last stays.
void frmFindW2KUser_Load(Desktop& session);
/// Lists the users whose common name contains what was typed.
void find_typed_user(Desktop& session);
/// Opens the tree down to the selected row's user and selects its node. False when the tree does not show it,
/// which a box reports.
bool btnSelectuser_Click(Desktop& session);

}  // namespace twk::windows
