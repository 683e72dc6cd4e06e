#pragma once

namespace twk::session {
struct Session;
}

/// The window `GroupAdd`, which makes one group.
namespace twk::windows {

/// Empties the fields, chooses a global security group, and offers only what this kind of domain has.
void GroupAdd_Form_Load(session::Session& session);
/// True when the group was made. The status bar of `Groupsfrm` shows what came of it.
bool GroupAdd_OKButton_Click(session::Session& session);

/// Asks for the name of a new global group of a WinNT domain and makes it.
void ask_for_nt_group(session::Session& session);

}  // namespace twk::windows
