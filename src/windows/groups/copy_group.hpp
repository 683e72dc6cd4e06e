#pragma once

/// The window `frmCopy_Group`, which copies the users of one group into another of the same domain.
namespace twk::windows {

struct Desktop;

/// Fills the two lists of groups; the group chosen in `Groupsfrm` is the one to copy from.
void frmCopy_Group_Form_Load(Desktop& session);
/// A group was chosen in one of the lists.
void frmCopy_Group_ImageCombo_Click(Desktop& session);
/// Asks, and copies: a row in `ListView1` and a step of the bar for each user, the result in `Label1`. True
/// when the walk was completed.
bool frmCopy_Group_btnCopy_Group_Click(Desktop& session);
/// True when the window may close; a running copy is instead stopped after the current user.
bool frmCopy_Group_btnCancel_Click(Desktop& session);

}  // namespace twk::windows
