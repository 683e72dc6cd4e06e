#pragma once

namespace twk::session {
struct Session;
}

/// The window `GroupAdd`, which makes one group and puts it into the lists of the program.
namespace twk::groups {

/// Empties the fields, chooses a global security group, and offers only what this kind of domain has: only
/// global groups in a WinNT domain, no universal groups in a mixed one.
void GroupAdd_Form_Load(session::Session& session);
/// True when the group was made: in the domain, or in an Active Directory domain in the managed OU or in
/// "CN=Users". A blank name does nothing; a refusal is reported in a box.
bool GroupAdd_OKButton_Click(session::Session& session);

/// Asks for the name of a new global group of a WinNT domain and makes it.
void ask_for_nt_group(session::Session& session);

}  // namespace twk::groups
