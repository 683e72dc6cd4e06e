#pragma once

#include <string>

#include "controls/list_view.hpp"

/// The window `Permissions`, which edits the permissions of new directories ("Permissions.dat") or those of
/// new shares ("SharePerm.dat").
namespace twk::windows {

struct Desktop;

/// Open the window on one of the two tables. A table that cannot be read is reported, and nothing opens: OK
/// would overwrite it.
void Set_Security_Click(Desktop& session);
void Sharepermissions_Click(Desktop& session);

/// A row was selected: `Access` shows its word.
void Permissions_ListView1_Click(Desktop& session);
/// Another word was chosen: the selected row gets it.
void Permissions_Access_Click(Desktop& session);
/// Removes the selected row.
void Permissions_Command3_Click(Desktop& session);
/// Adds a blank row with the access "Read" and selects it; its account is edited next.
void Permissions_Command4_Click(Desktop& session);
/// The edit of an account ended. A blank one removes a new row and leaves an old one unchanged; one that is
/// too long or contains a control character does the same, and `hint` says why.
void Permissions_AfterLabelEdit(Desktop& session, controls::ListRow& row, const std::string& typed);
/// Replaces the table by the rows. False leaves the window open, after a message.
bool Permissions_OK_Button_Click(Desktop& session);

}  // namespace twk::windows
