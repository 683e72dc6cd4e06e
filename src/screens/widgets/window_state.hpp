#pragma once

#include <QMainWindow>

namespace twk::screens {

/// Remembers how a person arranged a window and those that stay beside it: place and size, splitters, the
/// widths of columns.
void save_window(const QMainWindow& window);
void restore_window(QMainWindow& window);

}  // namespace twk::screens
