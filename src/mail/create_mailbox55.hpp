#pragma once

#include <functional>
#include <string>

#include "mail/mail_rows.hpp"
#include "session/preferences.hpp"

namespace twk::mail {

/// What a mailbox is made of.
struct Mailbox55 {
  bool CustomRecipient = false;  ///< an address elsewhere instead of a mailbox
  std::string LookupServer;      ///< where to look up accounts; empty for the default controller
  std::string Domain;            ///< NetBIOS name
  session::MailAdministrator administrator;
  std::string TargetAddress;  ///< for a table without a "TARGET-ADDRESS" row
  MailboxOwner owner;
  std::function<void(const std::string& path)> makes;  ///< called before, unless it exists; may be empty
  std::function<void(const std::string& path)> made;   ///< called once the object exists; may be empty
};

/// Makes a mailbox in the Exchange 5.5 directory of the owner's place, links it to the account and writes the
/// mail rows. True once the mailbox is complete except for the rows; a refused row sets
/// `MailWarning`. A failure before that beeps and is logged; what was made until then stays.
bool CreateMailbox55(session::Session& session, const Mailbox55& request);

}  // namespace twk::mail
