#pragma once

#include <cstdint>

/// The window `Edit_Properties`, which edits one row of five lists, and the menu `Listviewmnu` of those
/// lists. `EditPropertiesMode` says which list.
///
/// A list and its file change together: a file that cannot be written is reported, and the list stays as it
/// was.
namespace twk::windows {

struct Desktop;

namespace mode {
inline constexpr std::int32_t kW2k = 0;        ///< `ListView7`, "W2K.dat"
inline constexpr std::int32_t kMail = 1;       ///< `ListView8`, "Mail.dat"
inline constexpr std::int32_t kVariables = 2;  ///< `Varibles_Form.ListView1`, stored when that window closes
inline constexpr std::int32_t kCustom = 3;     ///< `Custom.ListView1`, stored by that window's OK
inline constexpr std::int32_t kWts = 4;        ///< `ListView9`, "WTS.dat"; its rows are fixed
}  // namespace mode

/// A double click, Enter, or the entry "Edit": opens the window on the selected row. Nothing happens when no
/// row is selected.
void Listviewmnu_Edit(Desktop& session, std::int32_t list_mode);
/// Opens the window on a new row. Only the lists of modes 0 to 2 take one, and a full one (49 mail rows, 50
/// variables) reports that.
void Listviewmnu_New(Desktop& session, std::int32_t list_mode);
/// Deletes the selected row, after a question when `Confirm_Deletes` is ticked, and rewrites the file. The
/// four rows of mode 3 stay and are emptied, without a question; rows of mode 4 do not change.
void Listviewmnu_Delete(Desktop& session, std::int32_t list_mode);

/// Fills the window for the mode; an old row fills the fields.
void Edit_Properties_Load(Desktop& session);
/// Stores the fields and ends the edit. False leaves the window open, after a message: a control
/// character, a text longer than its field, or a file that cannot be written.
bool Edit_Properties_OK(Desktop& session);
void Edit_Properties_Cancel(Desktop& session);
/// The first field changed: the hint warns about a comma, which would end the file's column.
void W2K_Attribute_Change(Desktop& session);

}  // namespace twk::windows
