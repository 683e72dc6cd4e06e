#pragma once

namespace twk::session {
struct Session;
}

/// The window `frmCopy_Group`, which copies the users of one group into another of the same domain.
namespace twk::groups {

/// Fills the two lists of groups; the group chosen in `Groupsfrm` is the one to copy from.
void frmCopy_Group_Form_Load(session::Session& session);
/// A group was chosen in one of the lists.
void frmCopy_Group_ImageCombo_Click(session::Session& session);
/// Asks, and adds each user among the source's members to the destination, a row in `ListView1` and a step of
/// the bar for each: "GREEN" for one who was added, "YELLOW" for one who is a member already, "RED" for one
/// who was refused. Groups and contacts are skipped, and so are users whose primary group is the source. True
/// when the walk was completed; a group that cannot be read ends it, as `Label1` reports.
bool frmCopy_Group_btnCopy_Group_Click(session::Session& session);
/// True when the window may close; a running copy is instead stopped after the current user.
bool frmCopy_Group_btnCancel_Click(session::Session& session);

}  // namespace twk::groups
