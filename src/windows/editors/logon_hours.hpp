#pragma once

/// The window `Logon_Hours`, which edits the hours of the template.
namespace twk::windows {

struct Desktop;

/// The button `LogonHours` of the template tab: fills the window and shows it.
void LogonHours_Click(Desktop& session);

/// Fills the grid from the template's hours. They can be stored while the template is edited.
void Logon_Hours_Load(Desktop& session);
/// Describes a rectangle of cells in `Label2`; rows 1 to 7, columns 1 to 24, corners in any order. Anything
/// outside the grid counts as its edge.
void show_selected(Desktop& session, int from_row, int from_col, int to_row, int to_col);
/// The same, and paints the cells: permitted or denied, as `Option1` says.
void select_cells(Desktop& session, int from_row, int from_col, int to_row, int to_col);
/// Shows the hours in another zone, which is stored as the choice; their meaning
/// stays.
void Zone_Click(Desktop& session);
/// OK: the hours go into `TemplateLogonHours`. Nothing happens while the button is disabled. If no zone
/// has been chosen yet, it is asked for first; False when that was not answered, and the window stays.
bool Logon_Hours_Command2_Click(Desktop& session);
/// Cancel.
void Logon_Hours_Command1_Click(Desktop& session);

}  // namespace twk::windows
