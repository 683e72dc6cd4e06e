#pragma once

#include <QLabel>

#include "windows/state/desktop.hpp"

/// Where the session works, so that nobody takes a real domain for a lab.
namespace twk::screens {

/// "Tarnwick", "Lab twk.test - /home/jo/lab - Tarnwick", "corp.test on dc1 as jo - Tarnwick".
QString title_of(const windows::Desktop& session);

/// "LAB" or "REAL DOMAIN" with the domain's name, each in a colour of its own; the tool tip says the rest.
/// Empty and hidden when it is not known.
QLabel* make_badge(const windows::Desktop& session, QWidget* parent);

}  // namespace twk::screens
