#pragma once

#include <QMainWindow>

#include "windows/state/desktop.hpp"

namespace twk::screens {

/// The menus "File", "Options" and "Help" of the main window. Entries are named "mnuFile1", "mnuOption5" ….
void make_menus(QMainWindow& window, windows::Desktop& session);

}  // namespace twk::screens
