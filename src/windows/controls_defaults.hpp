#pragma once

#include "controls/basic.hpp"
#include "windows/state/desktop.hpp"

namespace twk::windows {

/// State of the windows before the data files are read: the drive letters, the group buttons, nothing being
/// edited.
void prepare_controls(Desktop& session);

}  // namespace twk::windows
