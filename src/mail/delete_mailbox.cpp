#include "mail/delete_mailbox.hpp"

#include <array>

#include "base/errors.hpp"
#include "mail/mail_rows.hpp"
#include "mail/search_mail.hpp"
#include "session/session.hpp"

namespace twk::mail {
namespace {

using platform::Answer;
using platform::Buttons;
using platform::Icon;
using platform::ObjectPtr;
using session::Session;

/// What a mailbox is made of on its user.
constexpr std::array kMailboxAttributes = {"homeMDB",           "homeMTA",      "msExchHomeServerName",
                                           "msExchMailboxGuid", "mailNickname", "legacyExchangeDN",
                                           "proxyAddresses",    "mail",         "msExchUserAccountControl"};

bool wants_search(Session& session) {
  return session.platform.dialogs.MsgBox(
             "A Variable was used in the 'Container' field to create the mailbox\r\nDo you wish to Search "
             "the "
             "Exchange server for the\r\nMailbox to delete ?",
             Buttons::kYesNo, Icon::kQuestion, "Can't Find Mailox to Delete") == Answer::kYes;
}

bool is_sure(Session& session, const std::string& path, const std::string& name) {
  if (!session.form1.Confirm_Deletes.on() || session.multi_user.No_Prompting.on())
    return true;
  return session.platform.dialogs.MsgBox("Sure to Delete Mailbox\r\n" + path + "\r\ncn=" + name,
                                         Buttons::kYesNo, Icon::kQuestion, "Delete Mailbox") == Answer::kYes;
}

void log_failure(Session& session, const base::RuntimeError& failure) {
  session.log.line("Error Number: " + hex_number(failure.number()));
  session.log.line(failure.description());
}

bool has_value(platform::DirectoryObject& object, std::string_view attribute) {
  base::Trap absent;
  return absent([&] { static_cast<void>(object.Get(attribute)); });
}

}  // namespace

bool DeleteMailbox(Session& session, const MailboxDeletion& request) {
  const std::string row = container_row(session);
  if (has_variable(row))
    return wants_search(session) && search_mailbox(session, request);
  const std::string path = container_path(session, request.place, container_name(row));
  try {
    session.log.line("Connect Object:" + path + ".");
    if (session::is_debug(session) && !session.form1.Mail_Logon.on())
      session.log.line("Connecting as " + request.AdminName);
    const ObjectPtr container = bind_exchange(session, path, request.AdminName, request.AdminPassword);
    if (!is_sure(session, path, request.SamName))
      return false;
    delete_recipient(session, *container, request.CustomRecipient, request.SamName);
    return true;
  } catch (const base::RuntimeError& failure) {
    log_failure(session, failure);
    return false;
  }
}

bool DeleteMailbox2000(Session& session, const ObjectPtr& user) {
  if (!has_value(*user, "homeMDB")) {
    session.log.line("No mailbox: " + user->ADsPath());
    return false;
  }
  try {
    for (const char* const attribute : kMailboxAttributes) {
      if (has_value(*user, attribute))
        user->PutEx(1, attribute, {});
    }
    user->SetInfo();
    return true;
  } catch (const base::RuntimeError& failure) {
    log_failure(session, failure);
    return false;
  }
}

}  // namespace twk::mail
