#pragma once

#include <QMainWindow>
#include <QToolBar>

#include "windows/state/desktop.hpp"

namespace twk::screens {

/// `Toolbar1`: one action for each key, named by it. Its context menu hides the captions below the
/// pictures.
QToolBar* make_toolbar(QMainWindow& window, windows::Desktop& session);

}  // namespace twk::screens
