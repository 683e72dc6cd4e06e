#pragma once

#include "session/session.hpp"

namespace twk::windows {

/// The set-up tab's "Save": completes the database path with a backslash, shows the results of the two name
/// formats and stores every field of the tab.
void Command3_Click(session::Session& session);

/// Stores the first of the `Run_Hidden` boxes.
void Run_Hidden_Click(session::Session& session);

}  // namespace twk::windows
