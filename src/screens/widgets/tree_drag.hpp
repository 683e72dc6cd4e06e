#pragma once

#include "screens/widgets/tree_pane.hpp"
#include "windows/state/desktop.hpp"

namespace twk::screens {

/// Lets a user be dragged to another OU with Shift and the left button; Esc cancels the drag. Near the upper
/// and the lower edge the tree scrolls, a line each time `Timer2` fires.
void add_tree_drag(TreePane& tree, windows::Desktop& session);

}  // namespace twk::screens
