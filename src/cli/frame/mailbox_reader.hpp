#pragma once

#include <string>
#include <vector>

#include "cli/frame/context.hpp"
#include "mail/delete_mailbox.hpp"

/// The mailboxes of a site in the form the commands print.
namespace twk::cli {

/// Loads the site onto the Site tab, as a click on its row does. Raises `Refused` for an unknown site and for
/// a site without a mail server.
void load_mail_site(session::Session& session, const std::string& site);
/// True for a site that has Exchange 2000.
bool has_store(const session::Session& session);

/// The mailbox of that name in the loaded site, with the stored credentials.
mail::MailboxDeletion mailbox_request(session::Session& session, const std::string& name);

/// Chooses the mailbox if it is the only one.
mail::MailboxChooser only_mailbox(session::Session& session);

/// The mailboxes and custom recipients of that name in all containers of the loaded site's Exchange 5.5
/// server; in Exchange 2000 the users who have a mailbox by that name. Each with mailbox, place and path.
/// Raises `Refused` when the server cannot be queried.
std::vector<Json> find_mailboxes(session::Session& session, const std::string& name);

/// The same with what `mailbox show` prints about them.
std::vector<Json> describe_mailboxes(session::Session& session, const std::string& name);

}  // namespace twk::cli
