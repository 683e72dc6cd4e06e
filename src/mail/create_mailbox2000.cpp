#include "mail/create_mailbox2000.hpp"

#include "base/error_words.hpp"
#include "base/errors.hpp"
#include "base/text.hpp"
#include "format/filling.hpp"
#include "platform/ldap_text.hpp"
#include "session/loaded_database.hpp"
#include "session/session.hpp"

namespace twk::mail {
namespace {

using platform::ObjectPtr;
using session::Session;

constexpr std::int32_t kMailboxEnabled = 2;

/// The mail domain begins with "@"; an "@" that the row already has is not repeated.
std::string expand(Session& session, const MailboxOwner& owner, std::string value) {
  const std::string domain = "@" + session.DomainName;
  return format::Filling(session, std::move(value))
      .variables()
      .names(owner.FirstName, owner.MiddleName, owner.LastName)
      .tag("@%Domain%", domain)
      .tag("%Domain%", domain)
      .import_fields()
      .take();
}

/// What to write; empty for nothing.
std::string value_to_write(Session& session, const MailboxOwner& owner, const controls::ListRow& row) {
  const std::string value = value_of(row);
  if (base::equals_fold(value, "PROMPT"))
    return ask_for_value(session, owner, row.text);
  std::string expanded = expand(session, owner, value);
  return expanded.find('%') == base::npos ? expanded : std::string();
}

/// Values left staged by a refused call would spoil the next one.
void bind_again(Session& session, ObjectPtr& user) {
  if (user == nullptr)
    return;
  base::Trap gone;
  gone([&] { user = session.platform.directory.GetObject(user->ADsPath()); });
}

void write_row(Session& session, ObjectPtr& user, const std::string& attribute, const std::string& value) {
  base::Trap trap;
  if (trap([&] {
        user->Put(attribute, value);
        user->SetInfo();
      }))
    return session.log.line("Setting " + attribute + ", " + value);
  session.MailWarning = true;
  session.log.reason("Error setting " + attribute + ", " + value + ": " +
                     base::in_words(trap.number(), trap.description()));
  bind_again(session, user);
}

void write_rows(Session& session, ObjectPtr& user, const MailboxOwner& owner) {
  const controls::ListView& rows = session.database.directory_rows;
  for (std::size_t i = 0; i < rows.size(); ++i) {
    const controls::ListRow& row = rows.at(i);
    if (row.icon != "MAIL")
      continue;
    const std::string value = value_to_write(session, owner, row);
    if (!value.empty())
      write_row(session, user, row.text, value);
  }
}

}  // namespace

std::string store_path(std::string_view exOrg, std::string_view exServer, std::string_view storageGroup,
                       std::string_view mailboxStore, std::string_view domainDn) {
  std::string path;
  for (const std::string_view name : {mailboxStore, storageGroup}) {
    if (!name.empty())
      path += "CN=" + platform::escape_dn_value(name) + ",";
  }
  return path + "CN=InformationStore,CN=" + platform::escape_dn_value(exServer) +
         ",CN=Servers,CN=First Administrative Group,CN=Administrative Groups,CN=" +
         platform::escape_dn_value(exOrg) + ",CN=Microsoft Exchange,CN=Services,CN=Configuration," +
         std::string(domainDn);
}

bool CreateMailbox2000(Session& session, ObjectPtr& user, const MailboxOwner& owner,
                       std::string_view mailboxStore, std::string_view domainDn) {
  session.MailWarning = false;
  const std::string path =
      store_path(owner.place.Org, owner.place.Server, owner.place.Site, mailboxStore, domainDn);
  if (session::is_debug(session))
    session.log.line(path);
  base::Trap trap(session::is_debug(session));
  const bool made = trap([&] {
    session.platform.mailboxes.mailbox_store(user)->CreateMailbox(path);
    user->SetInfo();
    user->Put("msExchUserAccountControl", kMailboxEnabled);
    user->SetInfo();
  });
  if (!made) {
    session.log.line("Error Number: " + hex_number(trap.number()));
    session.Error_Log_Text = trap.description();
    session.log.reason(session.Error_Log_Text);
    bind_again(session, user);
    return false;
  }
  write_rows(session, user, owner);
  return true;
}

}  // namespace twk::mail
