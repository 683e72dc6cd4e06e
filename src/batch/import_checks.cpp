#include "batch/import_checks.hpp"

#include <optional>
#include <set>

#include "base/error_words.hpp"
#include "base/errors.hpp"
#include "base/text.hpp"
#include "batch/schema_properties.hpp"
#include "creation/account_name.hpp"
#include "creation/creation_run.hpp"
#include "creation/paths.hpp"
#include "directory/names.hpp"
#include "directory/operations.hpp"
#include "format/replace.hpp"
#include "format/user_name.hpp"
#include "mail/create_mailbox2000.hpp"
#include "mail/exchange_path.hpp"
#include "mail/mail_rows.hpp"
#include "platform/security.hpp"
#include "resources/account_lookup.hpp"
#include "session/session.hpp"
#include "stores/side_tables.hpp"
#include "stores/site_store.hpp"
#include "stores/template_store.hpp"

namespace twk::batch {
namespace {

using creation::NewUserRequest;
using session::Session;

constexpr std::string_view kUserName = "%UserName%";
constexpr std::string_view kEverybodysGroup = "Domain Users";

/// What the lines have in common.
struct Common {
  Session& session;
  const NewUserRequest& request;
  creation::TemplateValues staff;
  creation::SiteValues site;
  std::vector<ImportFault> faults;

  void warn(std::string subject, std::string message, std::string remedy) {
    faults.push_back({std::move(subject), false, std::move(message), std::move(remedy)});
  }
  void stop(std::string subject, std::string message, std::string remedy) {
    faults.push_back({std::move(subject), true, std::move(message), std::move(remedy)});
  }
  [[nodiscard]] std::string template_name() const { return std::string(base::trim(request.TemplateName)); }
};

/// Raises for a template or a site that cannot be loaded.
Common common_of(Session& session, const NewUserRequest& request) {
  stores::require_template(session, request.TemplateName);
  stores::require_site(session, request.SiteName);
  return {session,
          request,
          creation::values_of(session.ActiveTemplate),
          creation::values_of(session.ActiveSite),
          {}};
}

bool names_user(std::string_view text) {
  return base::find_fold(text, kUserName) != base::npos;
}

void check_groups(Common& common) {
  if (!common.request.stages.account)
    return;
  std::set<std::string> known;
  for (const stores::TemplateGroup& group : stores::template_groups(common.session))
    known.insert(base::upper(group.name));
  const auto lacks = [&](const std::string& group, const std::string& what) {
    common.warn("group",
                what + " of the template " + common.template_name() + ", " + group + ", does not exist",
                "make it with `twk group create`, or take it out of the template");
  };
  const records::TemplateRecord& record = common.session.ActiveTemplate;
  for (std::size_t slot = 0; !common.request.CopyUser && slot < static_cast<std::size_t>(record.GroupCount);
       ++slot) {
    const std::string name(base::trim(record.Groups.at(slot)));
    if (!name.empty() && !known.contains(base::upper(name)))
      lacks(name, "A group");
  }
  const std::string& primary = common.staff.PrimaryGroup;
  base::Trap unknown;
  if (!primary.empty() && !base::equals_fold(primary, kEverybodysGroup) &&
      !unknown([&] { directory::Group_RID_by_name(common.session, primary); }))
    lacks(primary, "The primary group");
}

/// The accounts of a table, but not those of the users themselves.
void check_accounts(Common& common, const std::vector<records::PermissionRecord>& rows,
                    const std::string& table) {
  Session& session = common.session;
  for (const records::PermissionRecord& row : rows) {
    const std::string account(base::trim(format::FRString(row.Account, "%Domain%", session.DomainName)));
    base::Trap trap;
    if (names_user(account) || trap([&] {
          session.platform.security.LookupAccountName(resources::server_for_accounts(session), account);
        }))
      continue;
    if (trap.number() == platform::security_error::kNoneMapped)
      common.warn("permissions",
                  std::string(table).append(" names ").append(account) + ", which is not found",
                  "correct that row of the table, or make the account");
  }
}

std::optional<std::vector<records::PermissionRecord>> rows_of(Common& common, std::string_view file,
                                                              const std::string& table) {
  std::vector<records::PermissionRecord> rows;
  base::Trap trap;
  if (trap([&] { rows = stores::read_permissions(common.session, file); }))
    return rows;
  common.warn("permissions", table + " cannot be read: " + base::in_words(trap.number(), trap.description()),
              "check " + std::string(file) + " in the database directory");
  return std::nullopt;
}

void check_folder_permissions(Common& common) {
  const std::string table = "The table of directory permissions";
  if (!common.request.stages.permissions || (common.staff.HomeDir.empty() && common.staff.ProfileDir.empty()))
    return;
  const auto rows = rows_of(common, stores::kPermissionFile, table);
  if (!rows)
    return;
  bool gives_user = false;
  for (const records::PermissionRecord& row : *rows)
    gives_user = gives_user || names_user(row.Account);
  if (!gives_user)
    common.warn("permissions",
                table + (rows->empty() ? " has no rows" : " has no row for " + std::string(kUserName)) +
                    ": no user gets rights on the new folders",
                "add a row for " + std::string(kUserName) + " to the table");
  check_accounts(common, *rows, table);
}

void check_shares(Common& common) {
  const creation::TemplateValues& staff = common.staff;
  if (!common.request.stages.shares || (staff.HomeShare.empty() && staff.ProfileShare.empty()))
    return;
  Session& session = common.session;
  const std::string table = "The table of share permissions";
  if (const auto rows = rows_of(common, stores::kSharePermissionFile, table)) {
    if (rows->empty())
      common.warn("permissions", table + " has no rows: everyone gets full control of the shares",
                  "add the rows that shares shall have");
    check_accounts(common, *rows, table);
  }
  const std::pair<const std::string&, const std::string&> wanted[] = {{staff.HomeShare, staff.HomeDir},
                                                                      {staff.ProfileShare, staff.ProfileDir}};
  for (const auto& [share, folder] : wanted) {
    if (share.empty())
      continue;
    if (folder.empty())
      common.warn("share", "The template has the share " + share + ", but no folder for it",
                  "give the template the folder's path, or take the share out");
    if (!names_user(share))
      common.warn("share", "The share " + share + " is the same for all users, so only the first one gets it",
                  "use " + std::string(kUserName) + " in its name");
  }
  base::Trap trap;
  trap([&] { session.platform.network.NetShareGetInfo(common.site.server, "IPC$"); });
  if (trap.number() != 0 && trap.number() != platform::network_error::kShareNotFound)
    common.warn("share",
                "The server " + common.site.server +
                    " does not answer for its shares: " + base::in_words(trap.number(), trap.description()),
                "check the server of the site, and that you are its administrator");
}

/// The folder above those of the users; empty when each user has a separate one.
std::string parent_folder(const Common& common, const std::string& folder, const std::string& share_point) {
  const std::string server_folder = format::FRString(folder, "%Server%", common.site.server);
  const std::string path = creation::reachable_path(common.site.server, server_folder, share_point);
  const std::string parent = path.substr(0, path.find_last_of('\\'));
  return folder.empty() || names_user(parent) ? std::string() : parent;
}

std::set<std::string> missing_parents(const Common& common) {
  std::set<std::string> missing;
  if (!common.request.stages.directories)
    return missing;
  const creation::TemplateValues& staff = common.staff;
  for (const std::string& parent : {parent_folder(common, staff.HomeDir, staff.HomeSharePoint),
                                    parent_folder(common, staff.ProfileDir, staff.ProfileSharePoint)}) {
    if (!parent.empty() && !common.session.platform.files.is_directory(parent))
      missing.insert(parent);
  }
  return missing;
}

void check_folders(Common& common) {
  for (const std::string& parent : missing_parents(common)) {
    base::Trap trap;
    trap([&] { static_cast<void>(common.session.platform.files.status(parent)); });
    const bool missing = trap.number() == 0 || trap.number() == base::error::kFileNotFound ||
                         trap.number() == base::error::kPathNotFound;
    const std::string why = missing ? "" : ": " + base::in_words(trap.number(), trap.description());
    common.stop("folder", std::string("There is no folder ").append(parent) + " for those of the users" + why,
                "make it, give --make-parents, or correct the template and the site");
  }
}

void check_mailbox(Common& common) {
  const creation::SiteValues& site = common.site;
  if (!common.request.stages.mailbox || site.mail_server.empty() || site.mail_site.empty() ||
      site.mail_organization.empty())
    return;
  Session& session = common.session;
  const mail::ExchangePlace place{site.mail_server, site.mail_site, site.mail_organization};
  const std::string container = mail::container_row(session);
  if (!site.exchange_2000 && container.empty())
    return common.warn("mailbox", "The mail table has no Container, so no mailbox can be made",
                       "add the row, or switch the stage off");
  const std::string path =
      site.exchange_2000
          ? "LDAP://" + mail::store_path(place.Org, place.Server, place.Site, site.mail_store,
                                         directory::domain_distinguished_name(session.DomainName))
          : mail::container_path(place, common.request.mail_administrator.port,
                                 mail::container_name(container));
  if (mail::has_variable(path) || names_user(path))
    return;
  base::Trap trap;
  if (!trap([&] {
        if (site.exchange_2000)
          session.platform.directory.GetObject(path);
        else
          mail::bind_exchange(session, path, common.request.mail_administrator);
      }))
    common.warn("mailbox",
                "The place of the mailboxes, " + path +
                    ", cannot be reached: " + base::in_words(trap.number(), trap.description()),
                "check the mail server, site and store of the site " +
                    std::string(base::trim(common.request.SiteName)));
}

/// A format that takes its text from a column is known only line by line.
void check_names(Common& common) {
  Session& session = common.session;
  const std::string& format = common.request.formats.account;
  if (base::find_fold(format, "%IMPORT") != base::npos)
    return;
  const std::string name = format::UserName(session, format, "Firstname", "Middlename", "Lastname");
  session.SerialTokenUsed = false;
  const std::string remedy = "choose another format of account names (`twk settings set Setup SetupID`)";
  if (name.empty())
    return common.stop("name", "The format of account names, \"" + format + "\", gives no name", remedy);
  for (const std::string& character :
       creation::invalid_characters(name, session::is_active_directory(session)))
    common.stop("name",
                std::string("The format of account names, \"").append(format) +
                    "\", gives names with a character that none may hold: " + character,
                remedy);
  if (name == format)
    common.warn("name", "The format of account names, \"" + format + "\", is the same name for all", remedy);
}

void check_key(Common& common) {
  const std::string& attribute = common.request.key.attribute;
  if (attribute.empty())
    return;
  if (!session::is_active_directory(common.session))
    return common.stop("key", "A WinNT domain has no attribute by which a person could be recognised",
                       "leave --key out");
  base::Trap trap;
  if (!trap([&] { static_cast<void>(look_up_property(common.session, attribute)); }))
    common.stop("key", "The directory does not know the attribute " + attribute + " of the key",
                "correct the name in --key");
}

}  // namespace

std::vector<ImportFault> check_import(Session& session, const ImportOrder& order) {
  base::Trap lost;
  std::vector<ImportFault> faults;
  const bool loaded = lost([&] {
    Common common = common_of(session, order.user);
    for (auto* const check : {check_groups, check_folder_permissions, check_shares, check_folders,
                              check_mailbox, check_names, check_key})
      check(common);
    faults = std::move(common.faults);
  });
  if (!loaded)
    faults.push_back({"record", true, base::in_words(lost.number(), lost.description()),
                      "choose a template and a site that the database has"});
  stores::release_template(session);
  return faults;
}

void make_parent_folders(Session& session, const ImportOrder& order) {
  platform::Files& files = session.platform.files;
  for (const std::string& parent : missing_parents(common_of(session, order.user))) {
    // From the first level below the share on.
    for (std::size_t end = parent.find('\\', parent.find('\\', 2) + 1); end != base::npos;) {
      end = parent.find('\\', end + 1);
      const std::string folder = parent.substr(0, end);
      if (!files.is_directory(folder))
        files.make_directory(folder);
    }
  }
  stores::release_template(session);
}

}  // namespace twk::batch
