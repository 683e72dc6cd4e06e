#pragma once

/// The popup's entries for the OU that is selected in the tree.
namespace twk::windows {

struct Desktop;

/// Empties the New User tab and takes the person there: the account will be made in this OU.
void New_Here_Click(Desktop& session);
/// Imports a file into this OU.
void Import_Here_Click(Desktop& session);
/// Finds users in this OU and below.
void Find_Here_Click(Desktop& session);

/// Asks for the new name.
void Rename_OU_Click(Desktop& session);
/// Asks for the place, an OU or the domain.
void Move_OU_Click(Desktop& session);
/// Counts what is in it, asks, and deletes it with everything.
void Delete_OU_Click(Desktop& session);

}  // namespace twk::windows
