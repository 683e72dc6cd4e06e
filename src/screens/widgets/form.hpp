#pragma once

#include <QBoxLayout>
#include <QCheckBox>
#include <QComboBox>
#include <QFormLayout>
#include <QLineEdit>
#include <QPushButton>

#include "controls/basic.hpp"
#include "screens/widgets/bind.hpp"

/// Makes bound widgets inside a layout whose widget is already set. Each gets the control's name as its
/// object name. A caption's "&" is its mnemonic.
namespace twk::screens {

QLineEdit* add_text(QFormLayout& form, const QString& caption, const char* name, controls::TextBox& control,
                    const Action& edited = {});
/// A field that shows a routine's result.
QLineEdit* add_result(QFormLayout& form, const QString& caption, const char* name,
                      controls::TextBox& control);
/// A box that accepts any typed text; it is bound once its limits are set.
QComboBox* make_editable_combo(const char* name, QWidget* parent);
QComboBox* add_combo(QFormLayout& form, const QString& caption, const char* name, controls::ComboBox& control,
                     const Action& chosen = {}, bool editable = false);
QCheckBox* add_check(QBoxLayout& box, const QString& caption, const char* name, controls::CheckBox& control,
                     const Action& clicked = {});
QPushButton* add_button(QBoxLayout& box, const QString& caption, const char* name, controls::Button& control,
                        const Action& clicked);
/// A button that is always available and has no state.
QPushButton* add_button(QBoxLayout& box, const QString& caption, const char* name, const Action& clicked);

/// Option buttons "NAME_0", "NAME_1" … in two columns, one for each caption.
QLayout* make_options(QWidget& parent, std::span<const char* const> captions, const char* name,
                      controls::OptionGroup& control, const Action& clicked);
/// A page that scrolls when the window is too small for it; it looks like its tab. The page is filled
/// first.
QWidget* make_scrolled(QWidget& page, QWidget* parent);

}  // namespace twk::screens
