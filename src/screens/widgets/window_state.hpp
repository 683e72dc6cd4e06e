#pragma once

#include <QMainWindow>

namespace twk::screens {

/// Remembers how a person arranged a window and those that stay next to it: place and size, splitters,
/// column widths.
void save_window(const QMainWindow& window);
void restore_window(QMainWindow& window);

}  // namespace twk::screens
