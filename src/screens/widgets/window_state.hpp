#pragma once

#include <QDialog>
#include <QMainWindow>

namespace twk::screens {

/// Remembers how a person arranged a window and those that stay next to it: place and size, splitters,
/// column widths.
void save_window(const QMainWindow& window);
void restore_window(QMainWindow& window);
/// For a window next to the main one that is made later.
void restore_beside(QDialog& dialog);

/// The same for one window, once it was shown.
void save_place(const QDialog& dialog);
void restore_place(QDialog& dialog);

}  // namespace twk::screens
