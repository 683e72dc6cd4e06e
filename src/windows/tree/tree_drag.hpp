#pragma once

namespace twk::controls {
struct TreeNode;
}

/// Moving a user to another OU by dragging its node, in Active Directory.
namespace twk::windows {

struct Desktop;

/// True when the node is a user that can be moved; the drag then begins.
bool begin_drag(Desktop& session, const controls::TreeNode& node);
/// The pointer is over a node, or none: an OU becomes the drop highlight, anything else clears it.
void drag_over(Desktop& session, const controls::TreeNode* node);
/// Cancels the drag; nothing is moved.
void cancel_drag(Desktop& session);
/// Moves the user into the highlighted OU, in the directory and in the tree, selects its new node and logs
/// it. True when the user was moved. A move that the directory refuses is reported in a box and leaves the
/// tree as it was; without a highlight nothing happens.
bool drop(Desktop& session);

}  // namespace twk::windows
