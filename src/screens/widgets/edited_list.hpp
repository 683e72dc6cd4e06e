#pragma once

#include <QBoxLayout>
#include <cstdint>

#include "screens/widgets/list_pane.hpp"
#include "windows/state/desktop.hpp"

namespace twk::screens {

/// Which entries of `Listviewmnu` a list has besides "Edit".
struct RowMenu {
  bool can_add = false;
  QString delete_caption;  ///< empty when no row can be removed
};

/// A list whose rows the window `Edit_Properties` edits in a mode of `windows::mode`, with its buttons
/// below. The buttons are also its context menu; Enter and a double click edit, Ins adds, Del removes.
/// Buttons are named after the list, with "_New", "_Edit", "_Delete" appended.
ListPane* add_edited_list(QBoxLayout& box, windows::Desktop& session, controls::ListView& list,
                          const char* name, std::int32_t mode, const ListLook& look, const RowMenu& menu);

}  // namespace twk::screens
