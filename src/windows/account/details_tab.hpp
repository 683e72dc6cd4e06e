#pragma once

namespace twk::controls {
struct TreeNode;
}

/// The user details tab: one account with its groups, in both kinds of domain.
namespace twk::windows {

struct Desktop;

/// "De&tails" of the tree's menu and a double click: brings the tab to the front and fills it with the user
/// of the node. A node that is not a user empties the tab. True when the user was read; otherwise panel 1
/// shows what went wrong, and the tab is empty.
bool show_user_details(Desktop& session, const controls::TreeNode& node);
/// A node of the tree was chosen: one that is not a user empties the tab.
void node_chosen(Desktop& session, const controls::TreeNode& node);
/// Empties the tab; the groups that the account was in go back to the list of the others.
void Clear_UM(Desktop& session);

/// The tab's "Save". Refusals are shown in panel 1. Does nothing while no account is shown.
void Userman_Save_Click(Desktop& session);
/// Add the account to the selected groups of `ListView3`, and remove it from those of `ListView4`. A refused
/// group stays where it is, and panel 1 says why. Do nothing while no account is shown.
void UM_ADD_GROUP_Click(Desktop& session);
void UM_REMOVE_GROUP_Click(Desktop& session);
/// One of the two lists has the selection; only its button can be pressed.
void ListView3_Click(Desktop& session);
void ListView4_Click(Desktop& session);
/// The button of the list.
void ListView3_DblClick(Desktop& session);
void ListView4_DblClick(Desktop& session);

}  // namespace twk::windows
