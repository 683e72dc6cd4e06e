#pragma once

namespace twk::controls {
struct TreeNode;
}

/// The entries of the tree's popup that act on one user at once. The status bar shows the outcome.
namespace twk::windows {

struct Desktop;

/// Sets the default password, to be changed at the next logon; asks first when `Confirm_Resets` is ticked.
/// True when it was set.
bool Reset_Password(Desktop& session, const controls::TreeNode& node);

/// Opens the window that renames the user, for the kind of domain.
void Rename_User(Desktop& session);

/// Deletes the folder of the account's profile path. True when it is gone.
bool Delete_Server_Profile(Desktop& session, const controls::TreeNode& node);

/// Asks for the workstation in `WKS_PROFILE` and deletes the user's profile there. True when it is gone.
bool Delete_WKS_Profile(Desktop& session, const controls::TreeNode& node);

/// The buttons of `WKS_PROFILE`.
void WKS_PROFILE_OKButton_Click(Desktop& session);
void WKS_PROFILE_CancelButton_Click(Desktop& session);

}  // namespace twk::windows
