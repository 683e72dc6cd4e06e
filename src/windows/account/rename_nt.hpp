#pragma once

namespace twk::session {
struct Session;
}

/// The window `Rename_NT`: account name and full name of a user of a WinNT domain, who is the selected node
/// of the tree.
namespace twk::windows {

/// Opens the window on the selected node; a user who cannot be read is reported in the status bar.
void show_rename_nt(session::Session& session);
/// Fills the window. Raises what the directory raises.
void Rename_NT_Load(session::Session& session);

/// The text fields were typed in.
void Rename_NT_User_Logon_Change(session::Session& session);
void Rename_NT_Full_Name_Change(session::Session& session);

/// OK. True when the window closes.
bool Rename_NT_OKButton_Click(session::Session& session);

}  // namespace twk::windows
