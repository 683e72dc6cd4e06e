#pragma once

namespace twk::session {
struct Session;
}

namespace twk::windows {

/// Start-up's reading of the settings into the session's values and the controls, in the order in which they
/// depend on each other; writes `DBVersion` when the installation is fresh. Shows the test fields of the name
/// formats, the custom commands of the tree's popup menu and the custom attributes.
void read_settings(session::Session& session);

/// `txtAdmin` and `txtPassword` can be filled while `Mail_Logon` is unticked.
void show_mail_credentials(session::Session& session);

}  // namespace twk::windows
