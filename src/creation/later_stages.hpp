#pragma once

namespace twk::session {
struct Form1;
}

/// The stages on file servers, terminal servers and mail servers: shares, directory permissions,
/// terminal-server settings, the mailbox. The creation calls them at their places; none is available in this
/// version. Their gates are switched off and disabled at start-up, and a stage that is reached all the same
/// says in the log that nothing was done and warns.
namespace twk::creation {

struct CreationRun;

void switch_off_later_stages(session::Form1& form);

void CreateUserShares(CreationRun& run);
void ApplyTerminalSettings(CreationRun& run);
void ApplyDirPermissions(CreationRun& run);

enum class Mailbox { kCreated, kCreatedWithWarnings, kFailed };
Mailbox CreateMailbox(CreationRun& run);

}  // namespace twk::creation
