#pragma once

#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "records/records.hpp"
#include "stores/store_outcome.hpp"

namespace twk::session {
struct Session;
}

/// "Site.dat". A site's name is its only key, compared trimmed and in upper case, except by `load_site`.
namespace twk::stores {

inline constexpr std::string_view kSiteFile = "Site.dat";

/// Loads the first record of exactly that name, deleted or not, into `ActiveSite`. A deleted one before a
/// live one is reported on the log tab, once a session, and any in the outcome. Without a match, which is not
/// done, `ActiveSite` holds the last record.
StoreOutcome load_site(session::Session& session, std::string_view name);

/// The same for a run, which must not continue without it: raises, with the reason, when the file cannot be
/// read or holds no such site.
void require_site(session::Session& session, std::string_view name);

/// The live sites in the order of the file, each as `load_site` would load it, in one pass. A site hidden by
/// a deleted one is reported on the log tab. Raises what the file raises.
std::vector<records::SiteRecord> read_sites(session::Session& session);

/// Reads the names of the live sites into the session. A failure ends the reading and is reported on the log
/// tab.
void load_site_names(session::Session& session);

/// The live record of that name, its texts trimmed. Raises when the file cannot be read.
std::optional<records::SiteRecord> live_site(session::Session& session, std::string_view name);

/// Why no new site can have that name: it is blank, taken, too long or holds a character that it cannot.
/// Empty when one can.
std::string site_name_refusal(const session::Session& session, std::string_view name);

/// Checks the site and writes it: over the live record of its name, or as a new one. A mailbox store is only
/// kept of Exchange 2000.
StoreOutcome save_site(session::Session& session, records::SiteRecord site, SaveAs as);

/// Asks whether to delete a site.
bool agrees_to_delete_site(session::Session& session);
/// Marks the first live record of that name as deleted.
StoreOutcome delete_site(session::Session& session, std::string_view name);

}  // namespace twk::stores
