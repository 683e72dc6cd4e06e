#pragma once

/// The window `GroupAdd`, which makes one group.
namespace twk::windows {

struct Desktop;

/// Empties the fields, chooses a global security group, and offers only what this kind of domain has.
void GroupAdd_Form_Load(Desktop& session);
/// True when the group was made. The status bar of `Groupsfrm` shows what came of it.
bool GroupAdd_OKButton_Click(Desktop& session);

/// Asks for the name of a new global group of a WinNT domain and makes it.
void ask_for_nt_group(Desktop& session);

}  // namespace twk::windows
