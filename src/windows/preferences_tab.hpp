#pragma once

#include "windows/state/desktop.hpp"

/// What the preferences and mail tabs do besides storing a control (`setting_controls.hpp`).
namespace twk::windows {

/// A password that cannot be changed excludes `Password_Change`, which is unticked, disabled and stored that
/// way.
void USR_Cant_Change_Click(Desktop& session);

/// Halting on warnings also halts on errors, and disables that choice.
void STOP_ON_RED_Click(Desktop& session);

// Mail tab.

void Mail_Logon_Click(Desktop& session);
/// Stores port and credentials; name and password only while `Mail_Logon` is unticked. The password is plain
/// text in the settings.
void savemail_Click(Desktop& session);

}  // namespace twk::windows
