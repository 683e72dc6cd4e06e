#pragma once

#include <string_view>

/// The window `CSV_Import`: what the columns of the file contain.
namespace twk::windows {

struct Desktop;

/// Shows the path, the first two lines and the columns of the first line that can be a user. Raises what
/// reading the file raises.
void load_csv_layout(Desktop& session, std::string_view path);
/// First, middle and last name in the first three columns, or free choice.
void chkImport_Click(Desktop& session);
/// OK and Cancel. OK puts a chosen password column and account-name column into the set-up fields, where they
/// stay and are shown.
void csv_layout_ok(Desktop& session);
/// As OK, but the file is to be rehearsed, after which the window is shown again.
void csv_layout_rehearse(Desktop& session);
void csv_layout_cancel(Desktop& session);

}  // namespace twk::windows
