#pragma once

#include "groups/change_members.hpp"

/// The window `Groupsfrm`: every group of the domain, and the members of the one shown. Closing only hides
/// it, so that its lists stay; the main window is locked meanwhile.
namespace twk::windows {

struct Desktop;

/// The entry "Groups" of the options menu and the toolbar.
void Groupsfrm_Show(Desktop& session);
/// The contents of the window when it is first shown.
void Groupsfrm_Form_Load(Desktop& session);
/// Returns the members and unlocks the main window.
void Groupsfrm_ExitButton_Click(Desktop& session);

/// Shows the chosen group: its comment in `Decsription_Text`, its users in `Members`, those by primary group
/// among them, and their number in panel 1. Other members and users without a row are left out and not
/// counted. A group that cannot be read leaves `Members` empty, and panel 1 says why.
void Groupsfrm_Group_Details_Click(Desktop& session);
void Groupsfrm_ListView1_DblClick(Desktop& session);
/// Another group was chosen: the members of the previous one are returned.
void Groupsfrm_ListView1_Click(Desktop& session);
/// Sorts by a column, counted from 0; clicking the same heading again reverses the order.
void Groupsfrm_ListView1_ColumnClick(Desktop& session, int column);

/// Add the selected users of `NotMembers` to the chosen group, and remove those of `Members` from it; panel 1
/// shows what came of it. A refused user keeps the selection. Do nothing without a chosen group.
groups::MembersOutcome Groupsfrm_Command2_Click(Desktop& session);
groups::MembersOutcome Groupsfrm_Command1_Click(Desktop& session);
/// A user was selected in one of the lists, which deselects the other.
void Groupsfrm_Members_Click(Desktop& session);
void Groupsfrm_NotMembers_Click(Desktop& session);
void Groupsfrm_Members_DblClick(Desktop& session);

/// Asks, and deletes the chosen group; the details tab is emptied. True when it is gone.
bool Groupsfrm_Delete_Group_Click(Desktop& session);

/// Opens `GroupAdd`; in a WinNT domain asks for the name of a new global group and makes it.
void Groupsfrm_Add_Group_Click(Desktop& session);
/// Opens `frmCopy_Group`.
void Groupsfrm_COPY_GRP_Click(Desktop& session);
/// "Show all users": reads them after a question, then shows the current group again.
void Groupsfrm_btn_showGrpusers_Click(Desktop& session);

}  // namespace twk::windows
