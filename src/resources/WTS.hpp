#pragma once

#include <cstdint>
#include <string_view>

namespace twk::session {
struct Session;
}

/// A user's terminal-server settings, written on the domain controller.
namespace twk::resources {

// Both return False when something was not set. Nothing is raised. A domain without a controller shows a box;
// a refused setting beeps, is logged, and leaves the reason in `Error_Log_Text`.

/// Writes the terminal-server rows that have a value, from the first to the last or to the first refusal.
/// Their variables are filled in, "%server%" by the site's server and "%UserName%" by `shown_name`. Row 5
/// asks whether to start a program, while the setting says whether the person may choose, so its number is
/// inverted.
bool ApplyTerminalRows(session::Session& session, std::string_view userName, std::string_view domain,
                       std::string_view shown_name);

/// Writes one setting, by the number of its row, with "%UserName%" in the value filled in by `userName`; 14
/// is the profile path, too. Here 5 has the setting's own name and is not inverted. Any other number does
/// nothing.
bool ApplyTerminalSetting(session::Session& session, std::string_view userName, std::string_view domain,
                          std::int16_t number, std::string_view value);

}  // namespace twk::resources
