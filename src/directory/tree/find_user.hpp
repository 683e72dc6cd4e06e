#pragma once

#include <string>
#include <string_view>

namespace twk::controls {
struct TreeNode;
}
namespace twk::session {
struct Session;
}

/// Finding a user: in Active Directory through the window `frmFindW2KUser`, in a WinNT domain in the tree.
namespace twk::directory {

/// The command of the toolbar.
void Find_User(session::Session& session);

/// The first user after `node`, or in the whole tree when it is null, whose name contains the text in any
/// case; null when there is none.
controls::TreeNode* next_user_with(session::Session& session, const controls::TreeNode* node,
                                   std::string_view text);
/// Asks for a name and walks the tree's users for those that contain it, in any case; goes on to the next as
/// long as the person wants.
void Find_NT_User(session::Session& session);

/// Empties the window before it is shown; what was typed last stays.
void frmFindW2KUser_Load(session::Session& session);
/// Lists the users whose common name contains what was typed.
void btnGo_Click(session::Session& session);
/// The rows of that search. "*" means any text, as does an empty text; any other character means itself.
/// False when the directory could not be asked; `reason` then says why.
bool Find_AD_Users(session::Session& session, std::string_view text, std::string* reason = nullptr);
/// Opens the tree down to the selected row's user and selects its node. False when the tree does not show it,
/// which a box reports.
bool btnSelectuser_Click(session::Session& session);

}  // namespace twk::directory
