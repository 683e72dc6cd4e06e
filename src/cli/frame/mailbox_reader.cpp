#include "cli/frame/mailbox_reader.hpp"

#include "base/errors.hpp"
#include "base/text.hpp"
#include "cli/parser/near_matches.hpp"
#include "cli/terminal/failures.hpp"
#include "directory/operations.hpp"
#include "mail/search_mail.hpp"
#include "platform/ldap_text.hpp"
#include "session/directory_windows.hpp"
#include "session/form1.hpp"
#include "session/loaded_database.hpp"
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

std::vector<Json> found_in_tree(Session& session, const std::string& name) {
  mail::prepare_search(session, mailbox_request(session, name));
  controls::TreeView& tree = session.serach_mail.TreeView1;
  if (tree.first() == nullptr)
    throw Refused("The Exchange server " + session.serach_mail.Text2.text.get() + " cannot be queried.");
  std::vector<Json> rows;
  for (const controls::TreeNode* node = tree.first(); node != nullptr; node = tree.next(*node)) {
    if (node->image == "MAIL")
      rows.push_back({{"mailbox", node->text}, {"place", node->parent->text}, {"path", node->key}});
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
  const mail::MailboxDeletion request = mailbox_request(session, "");
  const ObjectPtr mailbox =
      mail::bind_exchange(session, row.text_at("path"), request.AdminName, request.AdminPassword);
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
  const session::Form1& form = session.form1;
  return {false,
          form.txtAdmin.text,
          form.txtPassword.text,
          name,
          {std::string(base::trim(session.ActiveSite.ExchangeServer)),
           std::string(base::trim(session.ActiveSite.ExchangeSite)),
           std::string(base::trim(session.ActiveSite.ExchangeOrg))}};
}

void take_only_mailbox(Context& context, Session& session) {
  context.dialogs().on_modal([&session](std::string_view window) {
    if (window == "Serach_Mail" && session.serach_mail.TreeView1.selected() != nullptr)
      mail::Delete_Mail(session);
  });
}

std::vector<Json> find_mailboxes(Session& session, const std::string& name) {
  return has_store(session) ? found_in_domain(session, name) : found_in_tree(session, name);
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
