#pragma once

/// The window `Rename_NT`: account name and full name of a user of a WinNT domain, who is the selected node
/// of the tree.
namespace twk::windows {

struct Desktop;

/// Opens the window on the selected node; a user who cannot be read is reported in the status bar.
void show_rename_nt(Desktop& session);
/// Fills the window. Raises what the directory raises.
void Rename_NT_Load(Desktop& session);

/// The text fields were typed in.
void Rename_NT_User_Logon_Change(Desktop& session);
void Rename_NT_Full_Name_Change(Desktop& session);

/// OK. True when the window closes.
bool Rename_NT_OKButton_Click(Desktop& session);

}  // namespace twk::windows
