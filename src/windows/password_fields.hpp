#pragma once

namespace twk::windows {

struct Desktop;

/// Stores the choice and shows or hides the format of the password.
void FmtPass_Click(Desktop& session);
/// The frame around the default passwords, as `FmtPass` has it.
void show_password_frame(Desktop& session);

}  // namespace twk::windows
