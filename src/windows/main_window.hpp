#pragma once

#include <string_view>

namespace twk::controls {
struct TreeNode;
}

/// The commands of the main window. An unknown index or key does nothing.

namespace twk::windows {

struct Desktop;

/// Menu "File": 1 import, 2 log file, 3 back-up, 5 end.
void mnuFile_Click(Desktop& session, int index);
/// Menu "Options": 1 several users, 2 how a directory is loaded, 4 groups, 5 limit to an OU, 6 compaction,
/// 7 the administrator's own attributes.
inline constexpr int kCustomProperties = 7;
void mnuOption_Click(Desktop& session, int index);
/// Popup of the tree, for the selected node: 0 details, 2 reset the password, 4 and 5 delete or move the
/// user in the multi-user window, 6 rename, 8 and 9 the profile
/// on the server and on a workstation, 10 a new OU, 13 and 14 the custom commands.
void mnupopup_Click(Desktop& session, int index);
/// See `kToolbarKeys`.
void Toolbar1_ButtonClick(Desktop& session, std::string_view key);

/// Another tab was chosen.
void SSTab1_Click(Desktop& session);
/// A person chose a node of the tree.
void TreeView1_NodeClick(Desktop& session, controls::TreeNode& node);
/// A branch of the tree was opened: an OU is read when it was not yet.
void TreeView1_Expand(Desktop& session, controls::TreeNode& node);
/// A double click, or Enter: shows a user's details; opens or closes any other node.
void TreeView1_DblClick(Desktop& session, controls::TreeNode& node);

/// The window was closed: the program ends.
void Form_Unload(Desktop& session);

}  // namespace twk::windows
