#include "mail/recipients.hpp"

#include "base/text.hpp"
#include "session/session.hpp"

namespace twk::mail {

using session::Session;

std::string path_of(const Recipient& recipient) {
  const std::size_t names = recipient.container.find('/', std::string_view("LDAP://").size());
  return recipient.container.substr(0, names + 1) + "CN=" + escaped_name(recipient.name) + "," +
         recipient.container.substr(names + 1);
}

const char* class_of(bool CustomRecipient) {
  return CustomRecipient ? kRecipientClass : kMailboxClass;
}

void delete_recipient(Session& session, platform::DirectoryObject& container, bool CustomRecipient,
                      std::string_view name) {
  if (session::is_debug(session))
    session.log.line((CustomRecipient ? "Delete RA " : "Delete OP ") + std::string(name));
  container.Delete(class_of(CustomRecipient), relative_name(name));
  container.SetInfo();
}

}  // namespace twk::mail
