#pragma once

#include "session/session.hpp"

/// What the preferences and mail tabs do beside storing a control (`setting_controls.hpp`).
namespace twk::windows {

/// A password that cannot be changed rules out `Password_Change`, which is unticked, disabled and stored so.
void USR_Cant_Change_Click(session::Session& session);

/// Halting on warnings also halts on errors, and takes that choice away.
void STOP_ON_RED_Click(session::Session& session);

// Mail tab.

void Mail_Logon_Click(session::Session& session);
/// Stores port and credentials; name and password only while `Mail_Logon` is unticked. The password is plain
/// text in the settings.
void savemail_Click(session::Session& session);

}  // namespace twk::windows
