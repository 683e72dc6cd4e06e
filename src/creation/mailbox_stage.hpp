#pragma once

#include "creation/creation_view.hpp"
#include "platform/directory.hpp"

namespace twk::session {
struct Session;
}

/// The stage on the mail server. It does not stop a run.
namespace twk::creation {

struct CreationRun;

enum class Mailbox { kCreated, kCreatedWithWarnings, kFailed };

/// Creates the mailbox on the kind of server that the site names.
Mailbox CreateMailbox(CreationRun& run);

/// The same for an account that is there already, with the site and the template that are loaded. The names
/// come from the account. The outcome is told in the logs; True when there is a mailbox.
bool CreateMailboxFor(session::Session& session, const platform::ObjectPtr& user,
                      const session::MailAdministrator& administrator, CreationView& view);

}  // namespace twk::creation
