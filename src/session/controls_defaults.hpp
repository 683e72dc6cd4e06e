#pragma once

#include "controls/basic.hpp"
#include "session/session.hpp"

namespace twk::session {

/// An empty entry and "A:" to "Z:"; the empty one is chosen.
void fill_drive_letters(controls::ComboBox& box);

/// State of the windows before the data files are read: the terminal-server rows, the drive letters, the
/// group buttons, all logon hours allowed, nothing in the making.
void prepare_controls(Session& session);

}  // namespace twk::session
