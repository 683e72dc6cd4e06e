#pragma once

#include <QGroupBox>

#include "windows/state/desktop.hpp"

namespace twk::screens {

/// What "Create User" would make, kept up with the fields as they are typed.
QGroupBox* make_foresight(windows::Desktop& session, QWidget* parent);

}  // namespace twk::screens
