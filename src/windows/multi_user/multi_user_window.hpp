#pragma once

#include <string>
#include <vector>

namespace twk::controls {
class ListView;
}  // namespace twk::controls

/// The window that works on many users at once: its selection, and what its tabs share.
namespace twk::windows {

struct Desktop;

/// Sets the boxes of the "Delete Users" tab from the settings. Once a session.
void MultiUser_Initialize(Desktop& session);
/// Fills the lists of sites, templates and Exchange servers, and sets which buttons are available, after a
/// domain was loaded.
void MultiUser_Load(Desktop& session);
/// Shows the window until the person closes it.
void show_multi_user(Desktop& session);
/// Shows the window at a tab of `multi_tab` with the users of these nodes of the tree as the whole selection.
/// The selection of before comes back when the window closes.
void show_for_users(Desktop& session, const std::vector<std::string>& keys, int tab);

/// Moves the selected rows of the lists of users, groups and units into the selection. This and the
/// following do nothing while a function runs.
void Command1_Click(Desktop& session);
/// Returns the selected rows of the selection to the lists they came from; a deleted user is dropped.
void Command2_Click(Desktop& session);
/// The same for one list: a double click.
void select_from(Desktop& session, controls::ListView& list);
/// Loads the list of users, when the person agrees.
void btn_Showusers_Click(Desktop& session);
/// Closes the window. False while a function runs.
bool Command7_Click(Desktop& session);

}  // namespace twk::windows
