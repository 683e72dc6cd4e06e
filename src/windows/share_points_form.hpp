#pragma once

namespace twk::session {
struct Session;
}

/// The window `frmSharePoints`: shares by which the home and profile directories of the template are reached.
namespace twk::windows {

/// The button of the template tab: fills the window and shows it.
void btnSharePoints_Click(session::Session& session);

/// Shows the two share points; they can be changed while the template is edited.
void frmSharePoints_Load(session::Session& session);
/// Takes them over, each with a backslash behind it and one fewer in front. False when one holds a control
/// character, which the status tells; the window then stays.
bool frmSharePoints_btnOK_Click(session::Session& session);
void frmSharePoints_btnCancel_Click(session::Session& session);

}  // namespace twk::windows
