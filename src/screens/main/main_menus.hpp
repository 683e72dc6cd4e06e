#pragma once

#include <QMainWindow>

#include "session/session.hpp"

namespace twk::screens {

/// The menus "File", "Options" and "Help" of the main window. Entries are named "mnuFile1", "mnuOption5" ….
void make_menus(QMainWindow& window, session::Session& session);

}  // namespace twk::screens
