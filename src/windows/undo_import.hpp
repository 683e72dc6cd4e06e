#pragma once

#include "controls/list_view.hpp"

namespace twk::windows {

struct Desktop;

/// True for a row of the log tab that tells the end of an import, which can be taken back.
bool is_of_import(const controls::ListRow* row);
/// Takes back the import of the selected row of the log tab, after a question. Each user gets a row there.
void undo_import(Desktop& session);

}  // namespace twk::windows
