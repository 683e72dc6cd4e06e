#include "cli/frame/mailbox_reader.hpp"

#include "base/errors.hpp"
#include "base/text.hpp"
#include "cli/parser/near_matches.hpp"
#include "cli/terminal/failures.hpp"
#include "directory/operations.hpp"
#include "mail/search_mail.hpp"
#include "platform/ldap_text.hpp"
#include "session/loaded_database.hpp"
#include "session/preferences.hpp"
#include "stores/site_store.hpp"

namespace twk::cli {
namespace {

using platform::ObjectPtr;
using session::Session;

std::string text_of_attribute(platform::DirectoryObject& object, std::string_view attribute) {
  std::string text;
  base::Trap absent;
  absent([&] { text = object.Get(attribute).text(); });
  return text;
}

Json list_of_attribute(platform::DirectoryObject& object, std::string_view attribute) {
  Json list = Json::array();
  base::Trap absent;
  absent([&] {
    for (const platform::Value& value : object.Get(attribute).list())
      list.push_back(value.text());
  });
  return list;
}

/// The account whose identifier is in a mailbox as hexadecimal text.
std::string account_of(Session& session, platform::DirectoryObject& mailbox) {
  std::string account;
  base::Trap absent;
  absent([&] {
    const base::Bytes digits = mailbox.Get("Assoc-NT-Account").bytes();
    base::Bytes bytes;
    for (std::size_t i = 0; i + 1 < digits.size(); i += 2) {
      const auto high = base::hex_digit(static_cast<char>(digits[i])).value_or(0);
      const auto low = base::hex_digit(static_cast<char>(digits[i + 1])).value_or(0);
      bytes.push_back(static_cast<std::uint8_t>(high << 4U | low));
    }
    if (const auto sid = platform::Sid::decode(bytes))
      account = session.platform.security.LookupAccountSid("", *sid);
  });
  return account;
}

/// None when the server cannot be reached, which is reported.
std::optional<mail::SiteSearch> search_or_report(Session& session, const mail::MailSearch& search) {
  try {
    return mail::search_site(session, search);
  } catch (const base::RuntimeError& failure) {
    mail::report_failed_search(session, failure);
    return std::nullopt;
  }
}

std::vector<Json> found_in_site(Session& session, const std::string& name) {
  const mail::MailSearch asked = mail::search_of(mailbox_request(session, name));
  const std::optional<mail::SiteSearch> search = search_or_report(session, asked);
  if (!search)
    throw Refused("The Exchange server " + asked.place.Server + " cannot be queried.");
  std::vector<Json> rows;
  for (const mail::SearchNode& node : search->nodes) {
    if (node.recipient) {
      const std::string& place = search->nodes.at(node.parent).name;
      rows.push_back({{"mailbox", node.name}, {"place", place}, {"path", node.path}});
    }
  }
  return rows;
}

std::vector<Json> found_in_domain(Session& session, const std::string& name) {
  if (!session::is_active_directory(session))
    throw Refused("Not Available in WinNT mode. Windows 2000 only");
  const std::string text = platform::escape_filter_value(name);
  const auto found = directory::run_query(
      session, "<LDAP://" + session.DomainName +
                   ">;(&(objectCategory=Person)(objectClass=User)(homeMDB=*)(|(" + "mailNickname=" + text +
                   ")(samAccountName=" + text + ")(cn=" + text + ")));mailNickname,homeMDB,adsPath;subtree");
  std::vector<Json> rows;
  for (; !found->at_eof(); found->MoveNext()) {
    rows.push_back({{"mailbox", found->field(0).text()},
                    {"place", found->field(1).text()},
                    {"path", found->field(2).text()}});
  }
  return rows;
}

void describe_old(Session& session, Json& row) {
  const ObjectPtr mailbox = mail::bind_exchange(session, row.text_at("path"),
                                                session::read_preferences(session).mail_administrator);
  row["kind"] = mailbox->Class();
  row["name"] = text_of_attribute(*mailbox, "cn");
  row["address"] = text_of_attribute(*mailbox, "Mail");
  row["otherAddresses"] = list_of_attribute(*mailbox, "otherMailbox");
  row["account"] = account_of(session, *mailbox);
}

void describe_new(Session& session, Json& row) {
  const ObjectPtr user = session.platform.directory.GetObject(row.text_at("path"));
  row["kind"] = user->Class();
  row["name"] = text_of_attribute(*user, "displayName");
  row["address"] = text_of_attribute(*user, "mail");
  row["otherAddresses"] = list_of_attribute(*user, "proxyAddresses");
  row["account"] = session.NTDomainName + "\\" + text_of_attribute(*user, "samAccountName");
}

}  // namespace

void load_mail_site(Session& session, const std::string& site) {
  stores::tell(session, stores::load_site(session, find_name("site", site, session.database.sites)));
  const records::SiteRecord& loaded = session.ActiveSite;
  if (base::trim(loaded.ExchangeServer).empty() || base::trim(loaded.ExchangeSite).empty() ||
      base::trim(loaded.ExchangeOrg).empty())
    throw Refused("The site \"" + site + "\" has no mail server.");
}

bool has_store(const Session& session) {
  return session.ActiveSite.Exchange2000;
}

mail::MailboxDeletion mailbox_request(Session& session, const std::string& name) {
  const records::SiteRecord& site = session.ActiveSite;
  mail::MailboxDeletion request;
  const session::Preferences preferences = session::read_preferences(session);
  request.administrator = preferences.mail_administrator;
  request.confirm = preferences.confirm_deletes;
  request.SamName = name;
  request.place = {std::string(base::trim(site.ExchangeServer)), std::string(base::trim(site.ExchangeSite)),
                   std::string(base::trim(site.ExchangeOrg))};
  request.choose = only_mailbox(session);
  return request;
}

mail::MailboxChooser only_mailbox(Session& session) {
  return [&session](const mail::MailboxDeletion& request) -> std::optional<mail::Recipient> {
    const mail::MailSearch asked = mail::search_of(request);
    const std::optional<mail::SiteSearch> search = search_or_report(session, asked);
    const mail::SearchNode* const only = search ? mail::only_recipient(*search) : nullptr;
    return only == nullptr ? std::nullopt : std::optional(mail::read_recipient(session, asked, *only));
  };
}

std::vector<Json> find_mailboxes(Session& session, const std::string& name) {
  return has_store(session) ? found_in_domain(session, name) : found_in_site(session, name);
}

std::vector<Json> describe_mailboxes(Session& session, const std::string& name) {
  std::vector<Json> rows = find_mailboxes(session, name);
  for (Json& row : rows) {
    if (has_store(session))
      describe_new(session, row);
    else
      describe_old(session, row);
  }
  return rows;
}

}  // namespace twk::cli
