#pragma once

#include <string_view>

/// What stands behind the import: the menu's entry, the run over a file, the Stop button.
namespace twk::windows {

struct Desktop;

/// The whole command: checks the selection, asks for the file, shows the window `CSV_Import` for its layout,
/// runs, shows the result.
void Import_Command(Desktop& session);

/// Runs over a file whose layout is chosen, as the New User tab and the preferences ask for; see
/// `batch::Import_Users`.
bool Import_File(Desktop& session, std::string_view path);

/// The Stop button: the run ends before the next line.
void CancelButton_Click(Desktop& session);

}  // namespace twk::windows
