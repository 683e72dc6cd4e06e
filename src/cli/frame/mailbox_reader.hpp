#pragma once

#include <string>
#include <vector>

#include "cli/frame/context.hpp"
#include "mail/delete_mailbox.hpp"

/// The mailboxes of a site as the commands print them.
namespace twk::cli {

/// Loads the site onto the Site tab, as a click on its row does. Raises `Refused` for a name that no site has
/// and for a site without a mail server.
void load_mail_site(session::Session& session, const std::string& site);
/// True for a site that has Exchange 2000.
bool has_store(const session::Session& session);

/// The mailbox of that name in the loaded site, with the credentials of the Mail tab.
mail::MailboxDeletion mailbox_request(session::Session& session, const std::string& name);

/// Stands for the person in the window of the search from here on: chooses a mailbox that is the only one.
void take_only_mailbox(Context& context, session::Session& session);

/// The mailboxes and custom recipients of that name in all containers of the loaded site's Exchange 5.5
/// server; in Exchange 2000 the users who have a mailbox by that name. Each with mailbox, place and path.
/// Raises `Refused` when the server cannot be asked.
std::vector<Json> find_mailboxes(session::Session& session, const std::string& name);

/// Those with what `mailbox show` tells of them.
std::vector<Json> describe_mailboxes(session::Session& session, const std::string& name);

}  // namespace twk::cli
