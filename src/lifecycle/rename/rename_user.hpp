#pragma once

namespace twk::session {
struct Session;
}

/// The window `RenameUser`: the names of an Active Directory user, who is the selected node of the tree.
namespace twk::lifecycle {

/// Opens the window on the selected node; a user who cannot be read is told in the status bar.
void show_rename_user(session::Session& session);
/// Fills the window. Raises what the directory raises.
void RenameUser_Load(session::Session& session);

/// The text fields were typed in.
void RenameUser_Full_Name_Change(session::Session& session);
void RenameUser_Logon_Name_pre2000_Change(session::Session& session);

/// OK: writes the logon names, then the others, then gives the object its new name and moves the node's key
/// along; then shares and folders where that is ticked and the name they are made of has changed. True when
/// the window closes; False when it stays, since a name was refused, which a box tells. What was saved until
/// then stays saved.
bool RenameUser_Command2_Click(session::Session& session);

}  // namespace twk::lifecycle
