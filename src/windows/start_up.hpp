#pragma once

namespace twk::platform {
class Dialogs;
}

namespace twk::windows {

struct Desktop;

/// False, with a box, for a screen that is narrower than the program's windows need. The width is in device
/// pixels, and the height does not matter.
bool screen_is_wide_enough(platform::Dialogs& dialogs, int width);

enum class StartUp {
  kReady,        ///< the session can be used, whether or not its domain answered
  kNotPermitted  ///< the person may not run the program; a box said so
};

/// Starts a session: settings, the list of domains, the domain, the fixed contents of controls, the
/// database files. A domain that cannot be reached leaves the tree empty and says so in the status bar.
/// Database files of an older generation are converted, which boxes report. Raises a runtime error when that
/// fails, before they are read.
StartUp start_session(Desktop& session);

/// The same without the domain: settings, controls and database files.
void start_session_without_domain(Desktop& session);

}  // namespace twk::windows
