#pragma once

#include <string_view>

namespace twk::session {
struct Session;
}

/// The Site tab: its list, its fields and its buttons. When a file cannot be opened or written, which is
/// shown in a box, the tab stays as it was.
namespace twk::windows {

/// Reads the names of the sites and adds them to the lists that offer them.
void load_sites(session::Session& session);

/// Empties and locks the fields; clears the selection, and drops a site that was not saved.
void Clear_Site(session::Session& session);

/// Loads the selected site and shows it.
void ListView2_Click(session::Session& session);
/// Adds a blank row for a new site; `site_name_edited` gives it its name.
void New_Site(session::Session& session);
/// The end of the blank row's edit. A name that no new site can have drops the row; the status says why.
void site_name_edited(session::Session& session, std::string_view typed);
/// Opens the fields, which show the live record of the selected name.
void Edit_Site(session::Session& session);
/// Saves the fields: in edit mode over the live record of the site, otherwise as a new one.
void Save_Site(session::Session& session);
/// Asks when `Confirm_Deletes` is ticked; deletes the site of the selected row.
void Delete_site(session::Session& session);
void Site_Cancel(session::Session& session);
/// The kind of Exchange site: labels, `Mail_Store` and `Find_Store` follow it.
void EXH5_Click(session::Session& session);

}  // namespace twk::windows
