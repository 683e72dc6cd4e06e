#pragma once

#include <string_view>

/// The Site tab: its list, its fields and its buttons. When a file cannot be opened or written, which is
/// shown in a box, the tab stays as it was.
namespace twk::windows {

struct Desktop;

/// Adds the sites that were read to the lists that offer them.
void list_sites(Desktop& session);

/// Empties and locks the fields; clears the selection, and drops a site that was not saved.
void Clear_Site(Desktop& session);

/// Loads the selected site and shows it.
void ListView2_Click(Desktop& session);
/// Adds a blank row for a new site; `site_name_edited` gives it its name.
void New_Site(Desktop& session);
/// The end of the blank row's edit. A name that no new site can have drops the row; the status says why.
void site_name_edited(Desktop& session, std::string_view typed);
/// Opens the fields, which show the live record of the selected name.
void Edit_Site(Desktop& session);
/// Saves the fields: in edit mode over the live record of the site, otherwise as a new one.
void Save_Site(Desktop& session);
/// Asks when `Confirm_Deletes` is ticked; deletes the site of the selected row.
void Delete_site(Desktop& session);
void Site_Cancel(Desktop& session);
/// Esc: the same, after a question when something would be lost.
void Site_Escape(Desktop& session);
/// True when what is edited may disappear, see `may_leave`.
bool may_leave_site(Desktop& session);
/// The kind of Exchange site: labels, `Mail_Store` and `Find_Store` follow it.
void EXH5_Click(Desktop& session);

}  // namespace twk::windows
