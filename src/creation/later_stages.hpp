#pragma once

namespace twk::session {
struct Form1;
}

namespace twk::creation {

/// Switches the gates of stages off and disables them that are not available in this version.
void switch_off_later_stages(session::Form1& form);

}  // namespace twk::creation
