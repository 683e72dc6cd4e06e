#pragma once

#include "controls/basic.hpp"
#include "session/session.hpp"

namespace twk::windows {
/// State of the windows before the data files are read: the terminal-server rows, the drive letters, the
/// group buttons, all logon hours allowed, nothing being edited.
void prepare_controls(session::Session& session);

}  // namespace twk::windows
