#pragma once

#include <string>

namespace twk::controls {
struct TreeNode;
}

namespace twk::windows {

struct Desktop;

/// The popup of the tree is about to be shown for a node: selects it and switches on or off the entries that
/// depend on its kind.
void POPUP(Desktop& session, controls::TreeNode& node);

/// Leaves the users among the chosen nodes (`TreeCommands::chosen`), that of the node alone when it is not
/// among them.
void choose_users(Desktop& session, const controls::TreeNode& node);

/// A path as a person copies it: a distinguished name without provider and server, any other path as it is.
std::string shown_path(const std::string& path);

}  // namespace twk::windows
