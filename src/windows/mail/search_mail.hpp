#pragma once

#include "mail/delete_mailbox.hpp"

/// The window `Serach_Mail`, in which a person searches an Exchange 5.5 site for a mailbox and chooses the
/// one to delete.
namespace twk::windows {

struct Desktop;

/// Opens the window for the request and searches for its name. The mailbox that was chosen in it, if any.
/// Raises when that cannot be read.
std::optional<mail::Recipient> choose_mailbox(Desktop& session, const mail::MailboxDeletion& request);
/// The same without opening the window.
void prepare_search(Desktop& session, const mail::MailboxDeletion& request);

/// Searches for the text of `Text1` on the server in `Text2`: fills the tree with the containers of the site
/// and, below each, the mailboxes and custom recipients of that name. The window's title says how many there
/// are. A server that cannot be reached is reported in a box.
void search_again(Desktop& session);

/// Marks the selected mailbox as the one to delete. False, with a box, when none is selected.
bool Delete_Mail(Desktop& session);

}  // namespace twk::windows
