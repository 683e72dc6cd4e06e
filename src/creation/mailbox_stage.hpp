#pragma once

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

/// The same for an existing account, with the loaded site and template. The names come from the account. The
/// outcome is in the logs; True when there is a mailbox.
bool CreateMailboxFor(session::Session& session, const platform::ObjectPtr& user);

}  // namespace twk::creation
