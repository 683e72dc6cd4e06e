#pragma once

#include <QBoxLayout>
#include <QDialog>
#include <QDialogButtonBox>
#include <functional>

#include "screens/widgets/bind.hpp"

namespace twk::screens {

/// OK and Cancel at the foot of a dialog. OK is the default and closes when `ok` returns True; Cancel, Esc
/// and the window's own cross run `cancel`. The OK button's object name is `ok_name`.
QDialogButtonBox* add_ok_cancel(QDialog& dialog, QBoxLayout& box, const char* ok_name,
                                const std::function<bool()>& ok, const Action& cancel = {});

/// A label for a text that is not always there; it is hidden while empty.
QLabel* add_hint(QWidget& parent, QBoxLayout& box, const char* name, controls::Label& control);

/// Follows the caption of the window.
void follow_title(QDialog& dialog, controls::Label& title);

}  // namespace twk::screens
