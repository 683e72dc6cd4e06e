#pragma once

#include <functional>
#include <optional>
#include <string>
#include <string_view>

#include "mail/exchange_path.hpp"
#include "platform/directory.hpp"
#include "session/preferences.hpp"

namespace twk::session {
struct Session;
}

/// Recipients of an Exchange 5.5 server: mailboxes and custom recipients.
namespace twk::mail {

inline constexpr const char* kRecipientClass = "Remote-Address";
inline constexpr const char* kMailboxClass = "OrganizationalPerson";

/// A mailbox or custom recipient of an Exchange 5.5 directory.
struct Recipient {
  std::string container;  ///< path of its container
  std::string name;
  bool CustomRecipient = false;
  bool there = true;  ///< false if no container of the site has it
};
/// "LDAP://EX55/CN=jo,CN=Recipients,OU=London,O=Org".
std::string path_of(const Recipient& recipient);

struct MailboxDeletion;
/// Lets a person choose the mailbox; none when nothing was chosen.
using MailboxChooser = std::function<std::optional<Recipient>(const MailboxDeletion& request)>;

/// Which mailbox to delete.
struct MailboxDeletion {
  bool CustomRecipient = false;
  session::MailAdministrator administrator;
  std::string SamName;
  ExchangePlace place;
  std::string path = {};  ///< of the mailbox, from the search; empty if the container decides
  bool confirm = false;   ///< asks before the deletion
  bool silent = false;    ///< nobody is asked, and the only mailbox of the name is taken
  MailboxChooser choose = {};
};

/// The class of a custom recipient or a mailbox.
const char* class_of(bool CustomRecipient);
/// Deletes a recipient of that name from its container. Raises what the directory raises.
void delete_recipient(session::Session& session, platform::DirectoryObject& container, bool CustomRecipient,
                      std::string_view name);

}  // namespace twk::mail
