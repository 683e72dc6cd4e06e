#pragma once

#include <string_view>

namespace twk::controls {
class ComboBox;
}
namespace twk::session {
struct Session;
}

/// The window `CSV_Import`: what the columns of the file contain.
namespace twk::windows {

/// Adds the columns up to that one to a choice, whose first entry means none.
void offer_column(controls::ComboBox& box, int column);

/// Shows the path, the first two lines and the columns of the first line that can be a user; `widest` shows
/// whether further lines have more. Raises what reading the file raises.
void load_csv_layout(session::Session& session, std::string_view path);
/// First, middle and last name in the first three columns, or free choice.
void chkImport_Click(session::Session& session);
/// OK and Cancel. OK puts a chosen password column and account-name column into the set-up fields, where they
/// stay and are shown.
void csv_layout_ok(session::Session& session);
void csv_layout_cancel(session::Session& session);

}  // namespace twk::windows
