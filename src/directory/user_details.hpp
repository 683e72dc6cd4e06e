#pragma once

#include <cstddef>

namespace twk::controls {
struct ListRow;
struct TreeNode;
}  // namespace twk::controls
namespace twk::session {
struct Session;
}

/// The user details tab: one account with its groups, in both kinds of domain.
namespace twk::directory {

/// "De&tails" of the tree's menu and a double click: brings the tab to the front and fills it with the user
/// of the node. A node that is no user empties the tab. True when the user was read; what went wrong stands
/// in panel 1, and the tab is empty then.
bool show_user_details(session::Session& session, const controls::TreeNode& node);
/// A node of the tree was chosen: one that is no user empties the tab.
void node_chosen(session::Session& session, const controls::TreeNode& node);
/// Empties the tab; the groups that the account was in go back to the list of the others.
void Clear_UM(session::Session& session);

/// The tab's "Save". What is refused stands in panel 1. Does nothing while no account is shown.
void Userman_Save_Click(session::Session& session);
/// Put the account into the selected groups of `ListView3`, and out of those of `ListView4`. A group that
/// refuses keeps its place, and panel 1 tells why. Do nothing while no account is shown.
void UM_ADD_GROUP_Click(session::Session& session);
void UM_REMOVE_GROUP_Click(session::Session& session);
/// One of the two lists has the selection; its button is the one that can be pressed.
void ListView3_Click(session::Session& session);
void ListView4_Click(session::Session& session);
/// The button of the list.
void ListView3_DblClick(session::Session& session);
void ListView4_DblClick(session::Session& session);

}  // namespace twk::directory
