#pragma once

/// The stage on the mail server. It does not stop a run.
namespace twk::creation {

struct CreationRun;

enum class Mailbox { kCreated, kCreatedWithWarnings, kFailed };

/// Creates the mailbox on the kind of server that the site names.
Mailbox CreateMailbox(CreationRun& run);

}  // namespace twk::creation
