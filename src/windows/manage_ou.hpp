#pragma once

/// Limiting the session to one OU.
namespace twk::windows {

struct Desktop;

/// The command of the menu, on a selected OU: opens the window `Select_OU` for it, or lifts the limit while
/// there is one and loads the whole domain.
void Manage_OU(Desktop& session);

/// OK in the window: the selected OU becomes the limit from the next load on, stored for the person or the
/// machine.
void Select_OU_OK_Click(Desktop& session);

}  // namespace twk::windows
