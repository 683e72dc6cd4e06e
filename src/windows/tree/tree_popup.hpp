#pragma once

namespace twk::controls {
struct TreeNode;
}

namespace twk::windows {

struct Desktop;

/// The popup of the tree is about to be shown for a node: selects it and switches on or off the entries that
/// depend on its kind.
void POPUP(Desktop& session, controls::TreeNode& node);

}  // namespace twk::windows
