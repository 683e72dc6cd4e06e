#pragma once

#include <string>

#include "mail/exchange_path.hpp"

namespace twk::mail {

/// Which mailbox is to go.
struct MailboxDeletion {
  bool CustomRecipient = false;
  std::string AdminName;
  std::string AdminPassword;
  std::string SamName;
  ExchangePlace place;
};

/// Deletes a mailbox from the container that the mail table names; asks first when `Confirm_Deletes` is
/// ticked and `No_Prompting` is not. Where a variable in the container leaves its place open, the person is
/// asked to look for it in the window `Serach_Mail`. True when a mailbox was deleted; a failure is told in
/// the log.
bool DeleteMailbox(session::Session& session, const MailboxDeletion& request);

/// Takes the mailbox in an Exchange 2000 store from its user. False for a user who has none, and when the
/// directory refuses, which the log tells.
bool DeleteMailbox2000(session::Session& session, const platform::ObjectPtr& user);

}  // namespace twk::mail
