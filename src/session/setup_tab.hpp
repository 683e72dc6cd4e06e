#pragma once

#include "session/session.hpp"

namespace twk::session {

/// The set-up tab's "Save": completes the database path with a backslash, shows the results of the two name
/// formats and stores every field of the tab.
void Command3_Click(Session& session);

/// Stores the first of the `Run_Hidden` boxes.
void Run_Hidden_Click(Session& session);

}  // namespace twk::session
