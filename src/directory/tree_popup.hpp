#pragma once

namespace twk::controls {
struct TreeNode;
}
namespace twk::session {
struct Session;
}

namespace twk::directory {

/// The popup of the tree is about to be shown for a node: selects it and switches the entries on or off that
/// depend on what it is.
void POPUP(session::Session& session, controls::TreeNode& node);

}  // namespace twk::directory
