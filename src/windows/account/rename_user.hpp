#pragma once

/// The window `RenameUser`: the names of an Active Directory user, who is the selected node of the tree.
namespace twk::windows {

struct Desktop;

/// Opens the window on the selected node; a user who cannot be read is reported in the status bar.
void show_rename_user(Desktop& session);
/// Fills the window. Raises what the directory raises.
void RenameUser_Load(Desktop& session);

/// The text fields were typed in.
void RenameUser_Full_Name_Change(Desktop& session);
void RenameUser_Logon_Name_pre2000_Change(Desktop& session);

/// OK. True when the window closes; False when it stays because a name was refused.
bool RenameUser_Command2_Click(Desktop& session);

}  // namespace twk::windows
