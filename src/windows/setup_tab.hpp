#pragma once

#include "windows/state/desktop.hpp"

namespace twk::windows {

/// The set-up tab's "Save": completes the database path with a backslash, shows the results of the two name
/// formats and stores every field of the tab.
void Command3_Click(Desktop& session);

/// Stores the first of the `Run_Hidden` boxes.
void Run_Hidden_Click(Desktop& session);

}  // namespace twk::windows
