#pragma once

#include <QWidget>

namespace twk::screens {

/// Gives each caption below a widget a letter of its own: with a letter that two share, Alt only moves the
/// focus from one to the other. A button or tab keeps its letter before a field does; who loses it gets
/// another one of the caption that is free, or none. Pages of a tab widget, of which one is shown at a time,
/// may share letters with each other, not with what is around them. `taken` are letters of a menu bar.
void settle_mnemonics(QWidget& window, QString taken = {});

/// The letters of a menu bar.
QString letters_of_menus(const QWidget& window);

}  // namespace twk::screens
