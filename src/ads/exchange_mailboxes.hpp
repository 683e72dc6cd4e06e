#pragma once

#include <string>

#include "platform/directory.hpp"
#include "platform/mailbox.hpp"

namespace twk::ads {

/// Mailboxes of a domain's users in the stores of its Exchange 2000 organisation. `CreateMailbox` stages
/// "homeMDB", "homeMTA", "msExchHomeServerName", "msExchMailboxGuid", "legacyExchangeDN", "mailNickname" (the
/// account's name), and, where the user has none, "mail" and "proxyAddresses", which a mail system adds by
/// itself a little later. The user's `SetInfo` writes them.
class ExchangeMailboxes final : public platform::MailboxService {
 public:
  /// `domain` is the DNS name, which the addresses end with.
  ExchangeMailboxes(platform::DirectoryService& directory, std::string domain)
      : directory_(directory), domain_(std::move(domain)) {}

  /// A WinNT object, and anything that is not a user, cannot have a mailbox.
  std::unique_ptr<platform::IMailboxStore> mailbox_store(const platform::ObjectPtr& user) override;

 private:
  platform::DirectoryService& directory_;
  std::string domain_;
};

}  // namespace twk::ads
