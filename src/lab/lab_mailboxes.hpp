#pragma once

#include "lab/lab_domain.hpp"
#include "platform/mailbox.hpp"

namespace twk::lab {

/// Mailboxes of the lab's users in the stores of its organisation.
class LabMailboxes final : public platform::MailboxService {
 public:
  explicit LabMailboxes(LabDomain& domain) : domain_(domain) {}
  std::unique_ptr<platform::IMailboxStore> mailbox_store(const platform::ObjectPtr& user) override;

 private:
  LabDomain& domain_;
};

}  // namespace twk::lab
