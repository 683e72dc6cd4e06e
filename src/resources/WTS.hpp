#pragma once

#include <cstdint>
#include <string_view>

namespace twk::session {
struct Session;
}

/// A user's terminal-server settings, written on the domain controller.
namespace twk::resources {

/// Without `singleProperty` the rows of `ListView9` that have a value, from the first to the last or to one
/// that is refused. Their variables are filled in, "%server%" by the site's server and "%UserName%" by the
/// name on the New User tab. Row 5 asks to start a program where the setting says to let the person choose,
/// so its number is turned round.
///
/// With it the one setting `propertyNumber`, a row's number, by the text of the multi-user window's
/// `AD_CHANGE`, "%UserName%" filled in by `userName`; 14 is the profile path, too. Here 5 is called by the
/// setting's own name and is not turned round. Any other number sends nothing.
///
/// False when something was not set. Nothing is raised. A domain without a controller shows a box; a setting
/// that is refused beeps, leaves a line in the log and the reason in `Error_Log_Text`. The run's light and
/// `RunWarning` stay.
bool ApplyTerminalSettings(session::Session& session, std::string_view userName, std::string_view domain,
                           bool singleProperty, std::int16_t propertyNumber);

}  // namespace twk::resources
