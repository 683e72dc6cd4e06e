#pragma once

#include <string_view>

namespace twk::session {
struct Session;
}

/// What stands behind the import: the menu's entry, the run over a file, the Stop button.
namespace twk::windows {

/// The whole command: checks the selection, asks for the file, shows the window `CSV_Import` for its layout,
/// runs, shows the result.
void Import_Command(session::Session& session);

/// Runs over a file whose layout is chosen, as the New User tab and the preferences ask for; see
/// `batch::Import_Users`.
bool Import_File(session::Session& session, std::string_view path);

/// The Stop button: the run ends before the next line.
void CancelButton_Click(session::Session& session);

}  // namespace twk::windows
