#pragma once

#include <string_view>

namespace twk::session {

struct Form1;
struct Session;

/// Commands of the main window that are not part of this version. They are switched off wherever they could
/// be started from, and say so in a tool tip; one that is reached all the same says it in the status bar.
inline constexpr std::string_view kNotInThisVersion = "Not in this version";

void switch_off_later_commands(Form1& form);
/// Says in the status bar that nothing was done.
void tell_later_command(Session& session);

}  // namespace twk::session
