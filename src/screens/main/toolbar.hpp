#pragma once

#include <QMainWindow>
#include <QToolBar>

#include "session/session.hpp"

namespace twk::screens {

/// `Toolbar1`: one action a key, named by it. Its own context menu takes the captions below the pictures
/// away.
QToolBar* make_toolbar(QMainWindow& window, session::Session& session);

}  // namespace twk::screens
