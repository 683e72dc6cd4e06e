#pragma once

namespace twk::windows {

struct Desktop;

/// Reads the settings into the session's values and the controls at start-up, in the order of their
/// dependencies; writes `DBVersion` in a fresh installation. Shows the test fields of the name formats, the
/// custom commands of the tree's popup menu and the custom attributes.
void read_settings(Desktop& session);

/// Enables `txtAdmin` and `txtPassword` while `Mail_Logon` is unticked.
void show_mail_credentials(Desktop& session);

}  // namespace twk::windows
