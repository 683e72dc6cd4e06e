#pragma once

/// The choice of an Exchange 2000 store on the Site tab.
namespace twk::windows {

struct Desktop;

/// Fills `EXSite` with the storage groups of the server in `EXSERVER` and `Mail_Store` with the stores of the
/// first one, and chooses the first of each. An organisation that was not typed is searched for. Active
/// Directory only; missing input, and a server that is not found, are reported in a box. The fields of a site
/// that is not being edited stay.
void Find_Store_Click(Desktop& session);

/// Fills `Mail_Store` with the stores of the storage group that was chosen from the list; a name that is not
/// in the list leaves it as it is.
void storage_group_chosen(Desktop& session);

}  // namespace twk::windows
