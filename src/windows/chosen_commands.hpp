#pragma once

/// The popup's entries for the users that are selected in the tree. One is changed at once; for several the
/// preview of a run is shown first. Each run has a row on the log tab.
namespace twk::windows {

struct Desktop;

void Enable_Click(Desktop& session);
void Disable_Click(Desktop& session);
void Unlock_Click(Desktop& session);
/// Of one user `Reset_Password`; several get their default passwords, to be changed at the next logon.
void Reset_Click(Desktop& session);
/// Asks for the OU.
void Move_To_Click(Desktop& session);

}  // namespace twk::windows
