#pragma once

#include <memory>
#include <string_view>

#include "platform/directory.hpp"

namespace twk::platform {

/// The mailbox side of a user object, for mail systems that keep their users in Active Directory.
class IMailboxStore {
 public:
  virtual ~IMailboxStore() = default;
  /// Gives the user a mailbox in the store with that distinguished name; the user's `SetInfo` writes it.
  /// Raises kObjectExists for a user who has a mailbox, kNoSuchObject for a store that does not exist.
  virtual void CreateMailbox(std::string_view store_path) = 0;
};

/// Finds the mailbox side of an object.
class MailboxService {
 public:
  virtual ~MailboxService() = default;
  /// Raises kNotImplementedByProvider for an object that cannot have a mailbox.
  virtual std::unique_ptr<IMailboxStore> mailbox_store(const ObjectPtr& user) = 0;
};

}  // namespace twk::platform
