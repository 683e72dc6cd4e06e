#pragma once

#include "session/session.hpp"

/// Boxes and option buttons whose state is stored the moment it changes. The screen has changed the control
/// before it calls; an option button of a pair is chosen by the call.
namespace twk::windows {

// The stages of a creation, on the New User tab.

void Create_Dirs_Click(session::Session& session);
void Create_Shares_Click(session::Session& session);
void Dir_Security_Click(session::Session& session);
void Create_User_Account_Click(session::Session& session);
void Create_Mail_Account_Click(session::Session& session);
void Run_script_Click(session::Session& session);

// Preferences.

void PWD_NVR_EXPIRE_Click(session::Session& session);
void Profile_Delete_Name_Click(session::Session& session);
void Confirm_Deletes_Click(session::Session& session);
void Confirm_Resets_Click(session::Session& session);
void chkAdmin_Shares_Click(session::Session& session);
void Domain_Admin_Click(session::Session& session);
void New_Disabled_Click(session::Session& session);
void Password_Change_Click(session::Session& session);
/// A password that cannot be changed rules out `Password_Change`, which is unticked, disabled and stored so.
void USR_Cant_Change_Click(session::Session& session);

/// What the account is called in the directory: by its full name, or by its logon name.
void CNName_Click(session::Session& session);
void SamAccountName_Click(session::Session& session);
void Sorted_Yes_Click(session::Session& session);
void Sorted_No_Click(session::Session& session);
/// What users are called in the tree.
void DisplayName_Click(session::Session& session);
void DNName_Click(session::Session& session);

/// Halting on warnings also halts on errors, and takes that choice away.
void STOP_ON_RED_Click(session::Session& session);

// Mail tab.

void Mail_Logon_Click(session::Session& session);
/// Stores port and credentials; name and password only while `Mail_Logon` is unticked. The password is plain
/// text in the settings.
void savemail_Click(session::Session& session);

}  // namespace twk::windows
