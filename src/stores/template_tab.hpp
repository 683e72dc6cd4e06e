#pragma once

namespace twk::session {
struct Session;
}

/// The Template tab: its list, its buttons and the window of the variables. A file that cannot be opened or
/// written is reported by message, and the tab stays as it was.
namespace twk::stores {

/// Empties and locks the tab; nothing is chosen any more.
void Clear_TT(session::Session& session);

/// A template was chosen in `templatelst`.
void templatelst_Click(session::Session& session);
void NewTemplate(session::Session& session);
void EditTemplate(session::Session& session);
/// Checks the fields and writes the record: over the live one of that name in edit mode, otherwise a new one.
void savetemplate(session::Session& session);
/// Asks when `Confirm_Deletes` is ticked; marks the first live record of the chosen name as deleted.
void DeleteTemplate(session::Session& session);
/// Fills a new template from the record that was loaded last.
void paste(session::Session& session);
void Template_Cancel(session::Session& session);

/// Move the selected groups between the domain's list and the template's, while the template is edited. A
/// template holds at most 75.
void add_Click(session::Session& session);
void remove_Click(session::Session& session);
void ListView5_DblClick(session::Session& session);
void ListView6_DblClick(session::Session& session);
/// The selected group of the template becomes the primary group; a local group cannot.
void SetPriGroup(session::Session& session);

/// Shows the window of the variables and closes it again; a new template must be saved first.
void Variables(session::Session& session);
/// Closes it and writes the rows into the template's record.
void Varibles_Form_Unload(session::Session& session);

}  // namespace twk::stores
