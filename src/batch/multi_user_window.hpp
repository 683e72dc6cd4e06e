#pragma once

namespace twk::controls {
class ListView;
struct TreeNode;
}  // namespace twk::controls
namespace twk::session {
struct Session;
}

/// The window that works on many users at once: its selection, and what its tabs have in common.
namespace twk::batch {

/// The boxes of the "Delete Users" tab as the settings have them. Once a session.
void MultiUser_Initialize(session::Session& session);
/// The lists of sites, templates and Exchange servers, and which buttons are there; a domain was loaded.
void MultiUser_Load(session::Session& session);
/// Shows the window until the person closes it.
void show_multi_user(session::Session& session);
/// Takes the user of a node of the tree into the selection and shows the window at a tab of
/// `session::multi_tab`.
void show_for_user(session::Session& session, const controls::TreeNode& node, int tab);

/// Takes the selected rows of the lists of users, groups and units into the selection. Nothing happens while
/// a function runs, here and below.
void Command1_Click(session::Session& session);
/// Gives the selected rows of the selection back to the lists they came from; a user who is gone is dropped.
void Command2_Click(session::Session& session);
/// The same for one list: a double click.
void select_from(session::Session& session, controls::ListView& list);
/// Loads the list of users, when the person agrees.
void btn_Showusers_Click(session::Session& session);
/// Closes the window. False while a function runs.
bool Command7_Click(session::Session& session);

}  // namespace twk::batch
