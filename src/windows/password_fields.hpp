#pragma once

namespace twk::session {
struct Session;
}

namespace twk::windows {

/// Stores the choice and shows or hides the format of the password.
void FmtPass_Click(session::Session& session);
/// The frame around the default passwords, as `FmtPass` has it.
void show_password_frame(session::Session& session);

}  // namespace twk::windows
