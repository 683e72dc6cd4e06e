#pragma once

namespace twk::session {
struct Session;
}

/// The Template tab: its list, its fields and buttons, and the window of the variables. When a file cannot be
/// opened or written, which is shown in a box, the tab stays as it was.
namespace twk::windows {

/// Reads the names of the templates and adds them to the lists that offer them.
void load_templates(session::Session& session);

/// Empties and locks the tab; nothing is chosen any more.
void Clear_TT(session::Session& session);

/// A template was chosen in `templatelst`: it is loaded and shown.
void templatelst_Click(session::Session& session);
void NewTemplate(session::Session& session);
void EditTemplate(session::Session& session);
/// Saves the fields: in edit mode over the live record of the chosen name, otherwise as a new template.
void savetemplate(session::Session& session);
/// Asks when `Confirm_Deletes` is ticked; deletes the chosen template.
void DeleteTemplate(session::Session& session);
/// Fills a new template from the record that was loaded last.
void paste(session::Session& session);
void Template_Cancel(session::Session& session);

/// Move the selected groups between the domain's list and the template's, while the template is edited.
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

}  // namespace twk::windows
