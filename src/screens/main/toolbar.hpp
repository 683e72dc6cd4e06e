#pragma once

#include <QMainWindow>
#include <QToolBar>

#include "session/session.hpp"

namespace twk::screens {

/// `Toolbar1`: one action for each key, named by it. Its context menu hides the captions below the
/// pictures.
QToolBar* make_toolbar(QMainWindow& window, session::Session& session);

}  // namespace twk::screens
