#pragma once

namespace twk::controls {
struct TreeNode;
}

namespace twk::windows {

struct Desktop;

/// Runs the administrator's own command of popup entry 13 or 14 for a user node, without waiting for its end.
/// Its text has the same tags as the command after a creation, with the user's account name and names.
/// The log tab shows whether it started.
void run_custom_command(Desktop& session, int index, controls::TreeNode& node);

}  // namespace twk::windows
