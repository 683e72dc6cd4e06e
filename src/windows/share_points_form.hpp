#pragma once

/// The window `frmSharePoints`: shares through which the template's home and profile directories are reached.
namespace twk::windows {

struct Desktop;

/// The button of the template tab: fills the window and shows it.
void btnSharePoints_Click(Desktop& session);

/// Shows the two share points; they can be changed while the template is edited.
void frmSharePoints_Load(Desktop& session);
/// Saves them, each with a backslash at its end and one fewer at its beginning. False when one contains a
/// control character, which the status reports; the window then stays.
bool frmSharePoints_btnOK_Click(Desktop& session);
void frmSharePoints_btnCancel_Click(Desktop& session);

}  // namespace twk::windows
