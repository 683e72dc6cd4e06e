#pragma once

namespace twk::controls {
struct ListRow;
}

/// "Log.txt" in a window of our own, for workstations without a text viewer and for the rows of the log tab.
namespace twk::windows {

struct Desktop;

/// Shows the file in the workstation's text viewer; where none starts, in the window.
void View_Log_Click(Desktop& session);

/// Opens the window at the block that the row of the log tab is about: the last one that had begun by then.
void show_block_of(Desktop& session, const controls::ListRow& row);

/// Another block was selected.
void LogWindow_Selected(Desktop& session);
/// Shows all operations, or only those with errors.
void LogWindow_Filter(Desktop& session);

}  // namespace twk::windows
