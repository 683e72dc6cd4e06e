#pragma once

#include <string>
#include <string_view>
#include <vector>

#include "mail/recipients.hpp"

/// The window `Serach_Mail`: searches all containers of an Exchange 5.5 site for a mailbox and lets the
/// person choose the one to delete.
namespace twk::mail {

/// Opens the window for the request and searches for its name. True when a mailbox was chosen in it.
bool search_mailbox(session::Session& session, const MailboxDeletion& request);
/// The same without showing it.
void prepare_search(session::Session& session, const MailboxDeletion& request);
/// The same without a box for a server that cannot be reached: raises what the directory raises. Returns the
/// paths found.
std::vector<std::string> find_mailboxes(session::Session& session, const MailboxDeletion& request);

/// Fills the window's tree with the site's containers and, below each, the mailboxes and custom recipients of
/// that name, in any case. The window's title says how many there are. A server that cannot be reached is
/// reported in a box.
void Find_Mail_User(session::Session& session, std::string_view name);

/// Searches for the text of `Text1` on the server in `Text2`.
void search_again(session::Session& session);

/// Marks the selected mailbox as the one to delete. False, with a box, when none is selected.
bool Delete_Mail(session::Session& session);

/// The selected mailbox, read from the directory. Raises what the directory raises.
Recipient selected_recipient(session::Session& session);

}  // namespace twk::mail
