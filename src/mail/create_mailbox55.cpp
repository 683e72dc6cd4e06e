#include "mail/create_mailbox55.hpp"

#include <array>

#include "base/error_words.hpp"
#include "base/errors.hpp"
#include "base/text.hpp"
#include "mail/mailbox_descriptor.hpp"
#include "mail/recipients.hpp"
#include "platform/ldap_text.hpp"
#include "session/loaded_database.hpp"
#include "session/session.hpp"

namespace twk::mail {
namespace {

using base::RuntimeError;
using platform::escape_dn_value;
using platform::ObjectPtr;
using session::Session;

/// One mailbox being made.
struct Work {
  Session& session;
  const Mailbox55& request;
  LeadingRows rows;
  ObjectPtr container;
  ObjectPtr mailbox;

  [[nodiscard]] const MailboxOwner& owner() const { return request.owner; }
  [[nodiscard]] const char* object_class() const {
    return request.CustomRecipient ? kRecipientClass : kMailboxClass;
  }
  void log(std::string_view text) const { session.log.line(text); }
  /// An attribute has no empty value.
  void put(std::string_view attribute, std::string_view text) const {
    if (!text.empty())
      mailbox->Put(attribute, text);
  }
};

/// A line break separates lines of the log.
void tell_lines(Session& session, std::string_view text) {
  for (std::size_t end = text.find("\r\n"); end != base::npos; end = text.find("\r\n")) {
    session.log.reason(text.substr(0, end));
    text.remove_prefix(end + 2);
  }
  session.log.reason(text);
}

void tell_failure(Session& session, std::uint32_t number, const std::string& description) {
  session.platform.dialogs.beep();
  if (number == platform::ads_error::kLogonFailure) {
    session.log.reason(description);
    session.log.line("Exchange Logon Error...");
    return;
  }
  session.log.line("Error Number: " + hex_number(number));
  tell_lines(session, session.Error_Log_Text);
  if (!description.empty())
    session.log.reason(description);
}

void connect(Work& work) {
  const std::string path =
      container_path(work.owner().place, work.request.administrator.port, work.rows.Container);
  if (session::is_debug(work.session)) {
    work.log(path);
    work.log("EmailAddress: " + work.rows.TargetAddress);
  }
  work.log("Connect to Object:" + path);
  work.session.Error_Log_Text = "Failed to Connect to: " + path;
  work.container = bind_exchange(work.session, path, work.request.administrator);
}

/// True for an object of another mailbox, which creation will refuse.
bool has_object(const Work& work) {
  base::Trap missing;
  return missing([&] {
    static_cast<void>(work.container->GetObject(work.object_class(), relative_name(work.owner().SamName)));
  });
}

void create_object(Work& work) {
  work.session.Error_Log_Text = "Failed to set Target-Mail Address";
  work.mailbox = work.container->Create(work.object_class(), relative_name(work.owner().SamName));
  if (work.request.CustomRecipient)
    work.mailbox->Put("Target-Address", work.rows.TargetAddress);
  else
    work.mailbox->Put("MailPreferenceOption", 0);
  if (work.request.makes && !has_object(work))
    work.request.makes(work.mailbox->ADsPath());
  work.mailbox->SetInfo();
  if (work.request.made)
    work.request.made(work.mailbox->ADsPath());
  work.session.Error_Log_Text = "Error setting default Settings";
}

void put_account_and_homes(Work& work) {
  const ExchangePlace& place = work.owner().place;
  base::Bytes sid;
  GetSidAsHex(work.session, work.owner().SamName, sid);
  work.mailbox->Put("Assoc-NT-Account", sid);
  work.log("Assoc NT Account");
  const std::string server = ",cn=" + escape_dn_value(place.Server) +
                             ",cn=Servers,cn=Configuration,ou=" + escape_dn_value(place.Site);
  work.mailbox->Put("Home-MTA", "cn=Microsoft MTA" + server + ", o = " + escape_dn_value(place.Org));
  work.log("Home MTA done");
  work.mailbox->Put("Home-MDB", "cn=Microsoft Private MDB" + server + ",o=" + escape_dn_value(place.Org));
  work.log("Home MDB done");
}

void put_names(Work& work) {
  const MailboxOwner& owner = work.owner();
  work.put("uid", owner.SamName);
  work.put("name", owner.SamName);
  work.put("GivenName", owner.FirstName);
  work.put("Sn", owner.LastName);
  work.put("Cn", base::trim(owner.FirstName + " " + owner.LastName));
  work.put("Initials",
           std::string(base::left(owner.FirstName, 1)) + std::string(base::left(owner.LastName, 1)));
  work.mailbox->Put("MAPI-Recipient", true);
  work.mailbox->SetInfo();
}

void put_descriptor(Work& work) {
  work.session.Error_Log_Text = "Error setting Security-Descriptor";
  const std::array pairs = {AccountMask{work.owner().SamName, kMailboxOwnerRights}};
  base::Bytes descriptor;
  BuildMailboxDescriptor(work.session, descriptor, work.request.LookupServer, work.request.Domain,
                         work.owner().SamName, pairs);
  work.mailbox->Put("NT-Security-Descriptor", hex_text(descriptor));
  work.log("NT-Security-Descriptor");
  work.mailbox->SetInfo();
}

void put_addresses(Work& work) {
  const std::string& address = work.rows.TargetAddress;
  if (!work.rows.OtherMailbox.empty()) {
    work.session.Error_Log_Text = "Error SettingOtherMailbox";
    platform::ValueList others(work.rows.OtherMailbox.begin(), work.rows.OtherMailbox.end());
    work.mailbox->PutEx(2, "otherMailBox", others);
    work.log("Set OtherMailBoxs");
    work.mailbox->Put("Mail", address);
    work.log("Set Mail Address :" + address);
    work.mailbox->SetInfo();
  }
  work.mailbox->Put("Mail", address);
  work.mailbox->SetInfo();
}

void join_list(Work& work, const std::string& list) {
  work.session.platform.directory.GetObject(list)->Add(
      mailbox_path(work.owner().place, work.owner().SamName, work.rows.Container));
}

/// A refused row warns. Values that it leaves staged would spoil the next one, so the mailbox is then bound
/// again.
void write_row(Work& work, const controls::ListRow& row) {
  const std::string value = attribute_row(work.session, work.owner(), row);
  if (value.empty() || has_variable(value))
    return;
  const bool list = use_of(row) == RowUse::kMemberOf;
  if (list)
    work.log("Adding to Distribution List");
  work.log(row.text + ": " + value);
  base::Trap trap;
  if (trap([&] {
        if (list)
          return join_list(work, value);
        work.mailbox->Put(row.text, value);
        work.mailbox->SetInfo();
      }))
    return;
  work.session.MailWarning = true;
  work.session.log.reason("Error setting " + row.text + ": " +
                          base::in_words(trap.number(), trap.description()));
  trap([&] {
    work.mailbox = work.container->GetObject(work.object_class(), relative_name(work.owner().SamName));
  });
}

void write_rows(Work& work) {
  const controls::ListView& rows = work.session.database.mail_rows;
  for (std::size_t i = 0; i < rows.size(); ++i) {
    const RowUse use = use_of(rows.at(i));
    if (use == RowUse::kAttribute || use == RowUse::kMemberOf)
      write_row(work, rows.at(i));
  }
}

void make_mailbox(Work& work) {
  connect(work);
  create_object(work);
  if (!work.request.CustomRecipient) {
    put_account_and_homes(work);
    put_names(work);
    put_descriptor(work);
  }
  put_addresses(work);
}

}  // namespace

bool CreateMailbox55(Session& session, const Mailbox55& request) {
  session.MailWarning = false;
  Work work{session, request, read_leading_rows(session, request.owner, request.TargetAddress), {}, {}};
  session.Error_Log_Text =
      "Target-Address and Container cannot be blank.\r\nTarget-Address: " + work.rows.TargetAddress +
      "\r\nContainer: " + work.rows.Container;
  if (work.rows.TargetAddress.empty() || work.rows.Container.empty()) {
    tell_failure(session, 0, {});
    return false;
  }
  try {
    platform::WriteBatch batch(session.platform.directory);
    make_mailbox(work);
    write_rows(work);
    batch.commit();
    return true;
  } catch (const RuntimeError& failure) {
    tell_failure(session, failure.number(), failure.description());
    return false;
  }
}

}  // namespace twk::mail
