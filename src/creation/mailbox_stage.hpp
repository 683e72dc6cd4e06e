#pragma once

#include "platform/directory.hpp"
#include "session/creation_outcome.hpp"
#include "session/preferences.hpp"

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
/// come from the account. The outcome is also told in the logs.
session::CreationOutcome CreateMailboxFor(session::Session& session, const platform::ObjectPtr& user,
                                          const session::MailAdministrator& administrator);

}  // namespace twk::creation
