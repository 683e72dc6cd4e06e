#pragma once

#include <string>

#include "mail/recipients.hpp"

namespace twk::mail {

/// Decides which mailbox goes, and changes nothing: the one with the request's path, or the one in the
/// container that the mail table names. Where a variable leaves the container open, the person is asked and
/// chooses in the window `Serach_Mail`; with `No_Prompting` ticked nobody is asked and the only one of that
/// name in the site is taken.
///
/// Raises with the reason when it cannot be decided: in an open container several have the name or none has,
/// nothing was chosen, the mailbox stands in another container than the table names, or the server does not
/// answer. One that the table's container lacks, and all others too, is decided: it is not there.
Recipient find_mailbox_to_delete(session::Session& session, const MailboxDeletion& request);

/// Deletes what was found; asks first when `Confirm_Deletes` is ticked and `No_Prompting` is not. True when a
/// mailbox was deleted; why not, the log tells.
bool delete_found_mailbox(session::Session& session, const MailboxDeletion& request,
                          const Recipient& mailbox);

/// Both together.
bool DeleteMailbox(session::Session& session, const MailboxDeletion& request);

/// True for a user who has a mailbox in an Exchange 2000 store.
bool has_stored_mailbox(platform::DirectoryObject& user);
/// Takes the mailbox in an Exchange 2000 store from its user. False for a user who has none, and when the
/// directory refuses; why, the log tells.
bool DeleteMailbox2000(session::Session& session, const platform::ObjectPtr& user);

}  // namespace twk::mail
