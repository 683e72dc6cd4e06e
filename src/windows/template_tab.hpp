#pragma once

/// The Template tab: its list, its fields and buttons, and the window of the variables. When a file cannot be
/// opened or written, which is shown in a box, the tab stays as it was.
namespace twk::windows {

struct Desktop;

/// Adds the templates that were read to the lists that offer them.
void list_templates(Desktop& session);

/// Empties and locks the tab; nothing is chosen any more.
void Clear_TT(Desktop& session);

/// A template was chosen in `templatelst`: it is loaded and shown.
void templatelst_Click(Desktop& session);
void NewTemplate(Desktop& session);
void EditTemplate(Desktop& session);
/// Saves the fields: in edit mode over the live record of the chosen name, otherwise as a new template.
void savetemplate(Desktop& session);
/// Asks when `Confirm_Deletes` is ticked; deletes the chosen template.
void DeleteTemplate(Desktop& session);
/// Fills a new template from the record that was loaded last.
void paste(Desktop& session);
void Template_Cancel(Desktop& session);
/// Esc: the same, after a question when something would be lost.
void Template_Escape(Desktop& session);
/// True when what is edited may disappear, see `may_leave`.
bool may_leave_template(Desktop& session);

/// Move the selected groups between the domain's list and the template's, while the template is edited.
void add_Click(Desktop& session);
void remove_Click(Desktop& session);
void ListView5_DblClick(Desktop& session);
void ListView6_DblClick(Desktop& session);
/// The selected group of the template becomes the primary group; a local group cannot.
void SetPriGroup(Desktop& session);

/// Shows the window of the variables and closes it again; a new template must be saved first.
void Variables(Desktop& session);
/// Closes it and writes the rows into the template's record.
void Varibles_Form_Unload(Desktop& session);

}  // namespace twk::windows
