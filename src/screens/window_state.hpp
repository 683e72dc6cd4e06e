#pragma once

#include <QMainWindow>

namespace twk::screens {

/// Remembers how a person arranged a window: its place and size, its splitters, the widths of its columns.
void save_window(const QMainWindow& window);
void restore_window(QMainWindow& window);

}  // namespace twk::screens
