#pragma once

#include "lab/lab_domain.hpp"
#include "platform/mailbox.hpp"

namespace twk::lab {

/// Mailboxes of the domain's users in the stores of its Exchange 2000 organisation. `CreateMailbox` stages
/// "homeMDB", "homeMTA", "msExchHomeServerName", "msExchMailboxGuid", "legacyExchangeDN", "mailNickname" (the
/// account's name), and, where the user has none, "mail" and "proxyAddresses", which a mail system adds by
/// itself a little later. The user's `SetInfo` writes them.
class LabMailboxes final : public platform::MailboxService {
 public:
  explicit LabMailboxes(LabDomain& domain) : domain_(domain) {}
  /// A WinNT object, and anything that is no user, can have no mailbox.
  std::unique_ptr<platform::IMailboxStore> mailbox_store(const platform::ObjectPtr& user) override;

 private:
  LabDomain& domain_;
};

}  // namespace twk::lab
