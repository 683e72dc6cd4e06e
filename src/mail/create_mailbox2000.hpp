#pragma once

#include <string>
#include <string_view>

#include "mail/mail_rows.hpp"
#include "platform/directory.hpp"

namespace twk::mail {

/// The distinguished name of what is below the server's information store: of a store when `mailboxStore` is
/// given, otherwise of the storage group, otherwise of the information store itself. Always in the first
/// administrative group.
std::string store_path(std::string_view exOrg, std::string_view exServer, std::string_view storageGroup,
                       std::string_view mailboxStore, std::string_view domainDn);

/// Makes a mailbox for the user in the store of the owner's place (`Site` is the storage group) and writes
/// the directory rows that are of kind "MAIL". True once there is a mailbox; a refused row sets
/// `MailWarning`. `user` may be bound again. With "/DEBUG" a failure raises.
bool CreateMailbox2000(session::Session& session, platform::ObjectPtr& user, const MailboxOwner& owner,
                       std::string_view mailboxStore, std::string_view domainDn);

}  // namespace twk::mail
