#include "mail/delete_mailbox.hpp"

#include <algorithm>
#include <array>
#include <vector>

#include "base/error_words.hpp"
#include "base/errors.hpp"
#include "base/text.hpp"
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

/// The attributes that make up a mailbox on its user.
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

bool is_sure(Session& session, const MailboxDeletion& request, const Recipient& mailbox) {
  return !request.confirm || request.silent ||
         confirm_mailbox_deletion(session, mailbox.container + "\r\ncn=" + mailbox.name);
}

bool has_value(platform::DirectoryObject& object, std::string_view attribute) {
  base::Trap absent;
  return absent([&] { static_cast<void>(object.Get(attribute)); });
}

/// "There is no mailbox called "jo" in Head Office on EX55.", or which ones exist.
std::string found_text(const MailboxDeletion& request, const SiteSearch& search) {
  const std::vector<std::string> paths = paths_of(search);
  const std::string named =
      " called \"" + request.SamName + "\" in " + request.place.Site + " on " + request.place.Server;
  if (paths.empty())
    return "There is no mailbox" + named + ".";
  std::string text = paths.size() == 1 ? "The mailbox" : "The mailboxes";
  text += named + ":";
  for (const std::string& path : paths)
    text += " " + path + (&path == &paths.back() ? "." : ",");
  return text + " Choose one by its path (--path).";
}

[[noreturn]] void raise_undecided(const std::string& reason) {
  base::raise(platform::ads_error::kNoSuchObject, reason);
}

SiteSearch search(Session& session, const MailboxDeletion& request) {
  try {
    return search_site(session, search_of(request));
  } catch (const base::RuntimeError& failure) {
    base::raise(failure.number(), "Unable to connect to Exchange Server " + request.place.Server + ": " +
                                      failure.description());
  }
}

Recipient with_path(Session& session, const MailboxDeletion& request) {
  const SiteSearch found = search(session, request);
  const auto named = std::ranges::find_if(found.nodes, [&](const SearchNode& node) {
    return node.recipient && base::equals_fold(node.path, base::trim(request.path));
  });
  if (named == found.nodes.end())
    raise_undecided("No mailbox of that name has the path " + request.path + ". " +
                    found_text(request, found));
  return read_recipient(session, search_of(request), *named);
}

/// The one in the container of the mail table; refused when that would leave one behind in another container.
Recipient in_container(Session& session, const MailboxDeletion& request, const std::string& container) {
  Recipient mailbox{container_path(request.place, request.administrator.port, container), request.SamName,
                    request.CustomRecipient};
  base::Trap trap;
  if (trap([&] {
        bind_exchange(session, mailbox.container, request.administrator)
            ->GetObject(class_of(request.CustomRecipient), relative_name(request.SamName));
      }))
    return mailbox;
  if (trap.number() != platform::ads_error::kNoSuchObject)
    base::raise(trap.number(), "Unable to read " + mailbox.container + ": " + trap.description());
  const SiteSearch elsewhere = search(session, request);
  if (!paths_of(elsewhere).empty())
    raise_undecided("There is none in " + mailbox.container + ", which the mail table names. " +
                    found_text(request, elsewhere));
  mailbox.there = false;
  return mailbox;
}

Recipient only_one(Session& session, const MailboxDeletion& request) {
  const SiteSearch found = search(session, request);
  const SearchNode* const only = only_recipient(found);
  if (only == nullptr)
    raise_undecided(found_text(request, found));
  return read_recipient(session, search_of(request), *only);
}

Recipient chosen(Session& session, const MailboxDeletion& request, bool for_variable) {
  if (for_variable && !wants_search(session))
    raise_undecided(
        "It was not searched for, and a variable in the 'Container' field leaves its place open.");
  if (const auto mailbox = request.choose ? request.choose(request) : std::nullopt)
    return *mailbox;
  raise_undecided("None was chosen. " + found_text(request, search(session, request)));
}

void log_failure(Session& session, const base::RuntimeError& failure) {
  session.log.line("Error Number: " + hex_number(failure.number()));
  // An undecided mailbox's message itself says what to do.
  const bool undecided = failure.number() == platform::ads_error::kNoSuchObject;
  session.log.reason(undecided ? failure.description() : base::in_words(failure));
}

}  // namespace

bool confirm_mailbox_deletion(Session& session, const std::string& mailbox) {
  return session.platform.dialogs.MsgBox("Sure to Delete Mailbox\r\n" + mailbox, Buttons::kYesNo,
                                         Icon::kQuestion, "Delete Mailbox") == Answer::kYes;
}

Recipient find_mailbox_to_delete(Session& session, const MailboxDeletion& request) {
  if (!request.path.empty())
    return with_path(session, request);
  const std::string row = container_row(session);
  if (!row.empty() && !has_variable(row))
    return in_container(session, request, container_name(row));
  if (request.silent)
    return only_one(session, request);
  return chosen(session, request, !row.empty());
}

bool delete_found_mailbox(Session& session, const MailboxDeletion& request, const Recipient& mailbox) {
  if (!mailbox.there) {
    session.log.reason(found_text(request, {}));
    return false;
  }
  if (!is_sure(session, request, mailbox)) {
    session.log.reason("Not agreed to: " + path_of(mailbox));
    return false;
  }
  try {
    session.log.line("Connect Object:" + mailbox.container + ".");
    if (session::is_debug(session) && !request.administrator.own_logon)
      session.log.line("Connecting as " + request.administrator.name);
    const ObjectPtr container = bind_exchange(session, mailbox.container, request.administrator);
    delete_recipient(session, *container, mailbox.CustomRecipient, mailbox.name);
    return true;
  } catch (const base::RuntimeError& failure) {
    log_failure(session, failure);
    return false;
  }
}

bool DeleteMailbox(Session& session, const MailboxDeletion& request) {
  try {
    return delete_found_mailbox(session, request, find_mailbox_to_delete(session, request));
  } catch (const base::RuntimeError& failure) {
    log_failure(session, failure);
    return false;
  }
}

bool has_stored_mailbox(platform::DirectoryObject& user) {
  return has_value(user, "homeMDB");
}

bool DeleteMailbox2000(Session& session, const ObjectPtr& user) {
  if (!has_stored_mailbox(*user)) {
    session.log.reason("No mailbox: " + user->ADsPath());
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
