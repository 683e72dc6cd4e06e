#include "lab/lab_mailboxes.hpp"

#include "lab/errors.hpp"

namespace twk::lab {

std::unique_ptr<platform::IMailboxStore> LabMailboxes::mailbox_store(const platform::ObjectPtr& /*user*/) {
  raise(ads_error::kNotImplementedByProvider, domain_.root_dn + " has no mail system");
}

}  // namespace twk::lab
