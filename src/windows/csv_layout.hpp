#pragma once

#include <string_view>

#include "creation/new_user_request.hpp"

/// The window `CSV_Import`: what the columns of the file contain.
namespace twk::windows {

struct Desktop;

/// What the window asks for each line besides its columns, over what the New User tab asks for.
creation::NewUserRequest imported_request(const Desktop& session);

/// Shows the path, the first two lines and the columns of the first line that can be a user. Raises what
/// reading the file raises.
void load_csv_layout(Desktop& session, std::string_view path);
/// First, middle and last name in the first three columns, or free choice.
void chkImport_Click(Desktop& session);
/// Reads the file as a spreadsheet's: its first records under their headings, with the account name that each
/// would get first, and the names in the columns whose headings say so. A file that cannot be read so is
/// reported in a box, and the box is unticked.
void chkCsv_Click(Desktop& session);
/// Another column was chosen: the preview marks it and shows the account names that follow.
void show_chosen_columns(Desktop& session);
/// OK and Cancel. OK puts a chosen password column and account-name column into the set-up fields, where they
/// stay and are shown. False, after a box with the reason, when a text that the import fills names a heading
/// that the file does not have.
bool csv_layout_ok(Desktop& session);
/// As OK, but the file is to be rehearsed, after which the window is shown again.
bool csv_layout_rehearse(Desktop& session);
void csv_layout_cancel(Desktop& session);

}  // namespace twk::windows
