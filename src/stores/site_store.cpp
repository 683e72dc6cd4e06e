#include "stores/site_store.hpp"

#include <algorithm>
#include <map>

#include "base/text.hpp"
#include "records/record_file.hpp"
#include "session/loaded_database.hpp"
#include "session/log_tab.hpp"
#include "session/session.hpp"
#include "stores/database_files.hpp"
#include "stores/typed_text.hpp"

namespace twk::stores {
namespace {

using records::RecordFile;
using records::SiteRecord;
using session::Session;

RecordFile open_to_read(Session& session) {
  return RecordFile::open_read(session.platform.files, database_path(session, kSiteFile),
                               records::kSiteRecordSize);
}

RecordFile open_to_write(Session& session) {
  return RecordFile::open(session.platform.files, database_path(session, kSiteFile),
                          records::kSiteRecordSize);
}

/// The first live record of a name.
records::RecordSearch find_live(RecordFile& file, std::string_view name) {
  const std::string wanted = folded_name(name);
  return file.search([&wanted](std::string_view bytes) {
    return !records::is_deleted(bytes) && folded_name(records::decode_site(bytes).Name) == wanted;
  });
}

bool is_taken(const Session& session, std::string_view name) {
  const std::vector<std::string>& sites = session.database.sites;
  return std::any_of(sites.begin(), sites.end(), [wanted = folded_name(name)](const std::string& site) {
    return folded_name(site) == wanted;
  });
}

SiteRecord trimmed(SiteRecord site) {
  for (std::string* const text : {&site.Name, &site.NTServer, &site.ExchangeServer, &site.ExchangeOrg,
                                  &site.ExchangeSite, &site.MailStore})
    *text = std::string(base::trim(*text));
  return site;
}

/// Why the site cannot be saved; not done and without a text when it can.
StoreOutcome check(const Session& session, const SiteRecord& site, SaveAs as) {
  if (site.NTServer.empty() || site.Name.empty())
    return refused_in_box("Must Enter a Site Name, And a Home Server Name", "Incorect entry");
  if (std::string refusal =
          first_refusal(record_refusal, {site.Name, site.NTServer, site.ExchangeServer, site.ExchangeSite,
                                         site.ExchangeOrg, site.MailStore});
      !refusal.empty())
    return refused(std::move(refusal));
  if (as == SaveAs::kNew && is_taken(session, site.Name)) {
    return refused_in_box("Site Name " + site.Name + " Already Exist \r\nChange Site Name.",
                          "Site Name Conflict...");
  }
  const int filled = static_cast<int>(!site.ExchangeServer.empty()) +
                     static_cast<int>(!site.ExchangeSite.empty()) +
                     static_cast<int>(!site.ExchangeOrg.empty());
  if (filled == 1 || filled == 2)
    return refused_in_box("Must enter all three vaules for exchange.", "Incorrect Exchange Settings");
  return {.done = true};
}

/// False when there is no live record of that name.
bool replace_live(RecordFile& file, std::string_view name, const std::string& bytes) {
  const RecordFile::NumbersHold held = file.hold_numbers();
  const records::RecordSearch live = find_live(file, name);
  if (live.found)
    file.write(live.number, bytes);
  return live.found;
}

void write_record(Session& session, const SiteRecord& site, SaveAs as) {
  const std::string bytes = records::encode_site(site);
  RecordFile file = open_to_write(session);
  if (as == SaveAs::kLive && replace_live(file, site.Name, bytes))
    return;
  file.append(bytes);
}

void mark_record_deleted(Session& session, std::string_view name) {
  RecordFile file = open_to_write(session);
  const RecordFile::NumbersHold held = file.hold_numbers();
  records::RecordSearch live = find_live(file, name);
  if (!live.found)
    return;
  records::mark_deleted(live.bytes);
  file.write(live.number, live.bytes);
}

/// Reports once that a deleted site is loaded instead of the current one of that name.
void tell_shadow(Session& session, std::string_view name) {
  if (!session.told_shadows.insert(folded_name(name)).second)
    return;
  session::LOG_TAB(session, session::kYellow,
                   "Site.dat holds a deleted site \"" + std::string(base::trim(name)) +
                       "\" before the current one, and its values are used. Compact the database.");
}

/// False when there is no such site.
bool load_named(Session& session, std::string_view name) {
  const std::string_view wanted = base::trim(name);
  RecordFile file = open_to_read(session);
  const records::RecordSearch found = file.search(
      [&](std::string_view bytes) { return base::trim(records::decode_site(bytes).Name) == wanted; });
  if (found.found && records::is_deleted(found.bytes) && find_live(file, wanted).found)
    tell_shadow(session, wanted);
  if (found.number > 0)
    session.ActiveSite = records::decode_site(found.bytes);
  return found.found;
}

}  // namespace

StoreOutcome load_site(Session& session, std::string_view name) {
  try {
    StoreOutcome outcome;
    outcome.done = load_named(session, name);
    if (outcome.done && session.ActiveSite.Deleted)
      outcome.status = "These are the values of a deleted site of this name. Compact the database.";
    return outcome;
  } catch (const base::RuntimeError& failure) {
    return file_failure(kSiteFile, failure);
  }
}

void require_site(Session& session, std::string_view name) {
  if (!load_named(session, name))
    raise_no_record(session, kSiteFile, "site", name);
}

std::vector<SiteRecord> read_sites(Session& session) {
  std::map<std::string, SiteRecord> first_of_name;
  std::vector<std::string> live;
  open_to_read(session).search([&](std::string_view bytes) {
    SiteRecord site = records::decode_site(bytes);
    std::string name(base::trim(site.Name));
    if (!site.Deleted)
      live.push_back(name);
    first_of_name.try_emplace(std::move(name), std::move(site));
    return false;
  });
  std::vector<SiteRecord> sites;
  sites.reserve(live.size());
  for (const std::string& name : live) {
    sites.push_back(first_of_name.at(name));
    if (sites.back().Deleted)
      tell_shadow(session, name);
  }
  return sites;
}

void load_site_names(Session& session) {
  std::vector<std::string>& sites = session.database.sites;
  sites.clear();
  base::Trap trap;
  trap([&] {
    open_to_read(session).search([&sites](std::string_view bytes) {
      if (!records::is_deleted(bytes))
        sites.emplace_back(base::trim(records::decode_site(bytes).Name));
      return false;
    });
  });
  if (trap.number() != 0)
    session::LOG_TAB(session, session::kYellow, "Cannot read Site.dat: " + trap.description());
}

std::optional<SiteRecord> live_site(Session& session, std::string_view name) {
  RecordFile file = open_to_read(session);
  const records::RecordSearch live = find_live(file, name);
  return live.found ? std::optional(trimmed(records::decode_site(live.bytes))) : std::nullopt;
}

std::string site_name_refusal(const Session& session, std::string_view name) {
  const std::string_view wanted = base::trim(name);
  if (std::string refusal = record_name_refusal(wanted); !refusal.empty())
    return refusal;
  if (wanted.empty())
    return "Site Name cannot be Blank";
  if (is_taken(session, wanted))
    return "Site name already used";
  return base::length(wanted) > records::kSiteNameLength ? "Site name too long (20 chrs max)" : std::string();
}

StoreOutcome save_site(Session& session, SiteRecord site, SaveAs as) {
  site.Name = std::string(base::trim(site.Name));
  if (StoreOutcome outcome = check(session, site, as); !outcome.done)
    return outcome;
  site.Deleted = false;
  if (!site.Exchange2000)
    site.MailStore.clear();
  try {
    write_record(session, site, as);
  } catch (const base::RuntimeError& failure) {
    return file_failure(kSiteFile, failure);
  }
  if (as == SaveAs::kNew)
    session.database.sites.push_back(site.Name);
  return completed("Site Saved.");
}

bool agrees_to_delete_site(Session& session) {
  return session.platform.dialogs.MsgBox("Sure to Delete Site Record", platform::Buttons::kYesNo,
                                         platform::Icon::kQuestion,
                                         "Delete Site Record") == platform::Answer::kYes;
}

StoreOutcome delete_site(Session& session, std::string_view name) {
  try {
    mark_record_deleted(session, name);
  } catch (const base::RuntimeError& failure) {
    return file_failure(kSiteFile, failure);
  }
  std::vector<std::string>& sites = session.database.sites;
  if (const auto site = std::find(sites.begin(), sites.end(), base::trim(name)); site != sites.end())
    sites.erase(site);
  return completed("Site Deleted.");
}

}  // namespace twk::stores
