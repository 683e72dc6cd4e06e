#pragma once

#include <string>

#include "mail/recipients.hpp"

namespace twk::mail {

/// Decides which mailbox to delete, without changing anything: the one with the request's path, or the one in
/// the container that the mail table names. If a variable leaves the container open, the person chooses; when
/// the request is silent nobody is asked, and the only one of that name in the site is taken.
///
/// Raises with the reason when it cannot be decided: with an open container several or none have the name,
/// nothing was chosen, the mailbox is in another container than the table names, or the server does not
/// answer. If neither the table's container nor any other has one, that is a decision: there is none.
Recipient find_mailbox_to_delete(session::Session& session, const MailboxDeletion& request);

/// Asks whether to delete a mailbox, which is named by its path or by container and name.
bool confirm_mailbox_deletion(session::Session& session, const std::string& mailbox);
/// Deletes what was found; asks first when the request wants that and is not silent. True when a mailbox was
/// deleted; otherwise the log says why.
bool delete_found_mailbox(session::Session& session, const MailboxDeletion& request,
                          const Recipient& mailbox);

/// Both together.
bool DeleteMailbox(session::Session& session, const MailboxDeletion& request);

/// True for a user who has a mailbox in an Exchange 2000 store.
bool has_stored_mailbox(platform::DirectoryObject& user);
/// Removes a user's mailbox in an Exchange 2000 store. False for a user who has none, and when the directory
/// refuses; the log says why.
bool DeleteMailbox2000(session::Session& session, const platform::ObjectPtr& user);

}  // namespace twk::mail
