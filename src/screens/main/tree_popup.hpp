#pragma once

#include "screens/widgets/tree_pane.hpp"
#include "windows/state/desktop.hpp"

namespace twk::screens {

/// The menu `mnupopup` of the tree, on the right button and the menu key. Its entries are named "mnupopup0"
/// ….
void add_tree_popup(TreePane& tree, windows::Desktop& session);

}  // namespace twk::screens
