#pragma once

#include <string_view>

namespace twk::session {
struct Session;
}

/// The Site tab and "Site.dat". A site's name is its only key, compared trimmed and in upper case, except by
/// `Loadsite`. A file that cannot be opened or written is reported by message, and the tab stays as it was.
namespace twk::stores {

inline constexpr std::string_view kSiteFile = "Site.dat";

/// Loads the first record of exactly that name, deleted or not, into `ActiveSite` and onto the tab. A deleted
/// one before a live one is reported on the log tab, once a session. Without a match `ActiveSite` holds the
/// last record and the tab stays.
void Loadsite(session::Session& session, std::string_view name);

/// The same for a run, which must not continue without it: raises, with the reason, when the file cannot be
/// read or holds no such site.
void require_site(session::Session& session, std::string_view name);

/// Adds the live sites of the file to the lists. A failure ends the reading and is reported on the log tab.
void load_sites(session::Session& session);

/// Empties and locks the fields; clears the selection, and drops a site that was not saved.
void Clear_Site(session::Session& session);

// The tab's list and buttons.

void ListView2_Click(session::Session& session);
/// Adds a blank row for a new site; `site_name_edited` gives it its name.
void New_Site(session::Session& session);
/// The end of the blank row's edit. A name that is blank, taken, longer than 20 characters or holds a control
/// character drops the row; the status says why.
void site_name_edited(session::Session& session, std::string_view typed);
/// Opens the fields, which show the live record of the selected name.
void Edit_Site(session::Session& session);
/// Checks the fields and writes the record: over the live one of that name in edit mode, otherwise a new one.
void Save_Site(session::Session& session);
/// Asks when `Confirm_Deletes` is ticked; marks the first live record of the selected row's name as deleted.
void Delete_site(session::Session& session);
void Site_Cancel(session::Session& session);
/// The kind of Exchange site: labels, `Mail_Store` and `Find_Store` follow it.
void EXH5_Click(session::Session& session);

}  // namespace twk::stores
