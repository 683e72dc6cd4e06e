#pragma once

#include <QAbstractButton>
#include <QAction>
#include <QCheckBox>
#include <QComboBox>
#include <QGroupBox>
#include <QLabel>
#include <QLineEdit>
#include <QProgressBar>
#include <QRadioButton>
#include <functional>
#include <initializer_list>
#include <span>

#include "controls/basic.hpp"
#include "screens/widgets/pace.hpp"

/// Ties widgets to the controls of the windows' state, both ways: the widget shows what the control holds,
/// and what a person does is written into the control before the action runs. A binding ends with its widget,
/// and the control must outlive the widget. Widgets get their parent before they are bound.
namespace twk::screens {

/// What a person starts with a widget; may be empty. A failure is shown, see `run_guarded`.
using Action = std::function<void()>;

/// Keeps a watch as long as the object exists.
void keep(QObject& owner, controls::Watch watch);

/// Applies a value now and whenever it changes, as long as the owner exists.
template <typename T, typename Apply>
void follow(QObject& owner, const controls::Observable<T>& value, Apply apply) {
  apply(value.get());
  keep(owner, value.watch([&value, apply] { apply(value.get()); }));
}

/// Applies a value now, and when it changes at the widget's pace, as long as the widget exists.
template <typename T, typename Apply>
void follow_paced(QWidget& widget, const controls::Observable<T>& value, Apply apply) {
  apply(value.get());
  keep(widget, value.watch(PacedShowing(widget, [&value, apply] { apply(value.get()); })));
}

/// Colours of a read-only field.
QPalette looking_like_the_window();

/// Shows or hides a widget, and in a form also its label.
void set_shown(QWidget& widget, bool shown);

/// A locked field looks like the window around it. `edited` runs after each keystroke.
void bind_to(QLineEdit& widget, controls::TextBox& control, const Action& edited = {});
void bind_to(QLabel& widget, controls::Label& control);
/// One whose caption a run changes.
void bind_paced(QLabel& widget, controls::Label& control);
void bind_to(QCheckBox& widget, controls::CheckBox& control, const Action& clicked = {});
/// One button for each entry, in their order.
void bind_to(std::initializer_list<QRadioButton*> widgets, controls::OptionGroup& control,
             const Action& clicked = {});
void bind_options(std::span<QRadioButton* const> widgets, controls::OptionGroup& control,
                  const Action& clicked = {});
/// `clicked` must choose the control and release its partner, unless the two are bound by `bind_pair`.
void bind_to(QRadioButton& widget, controls::OptionButton& control, const Action& clicked = {});
/// Two option buttons of which one is chosen.
void bind_pair(QRadioButton& first_widget, controls::OptionButton& first, const Action& first_clicked,
               QRadioButton& second_widget, controls::OptionButton& second, const Action& second_clicked);
/// The widget keeps its own caption if the control has none.
void bind_to(QAbstractButton& widget, controls::Button& control, const Action& clicked);
void bind_to(QAction& widget, controls::MenuItem& control, const Action& triggered);
void bind_to(QGroupBox& widget, controls::Frame& control);
void bind_to(QProgressBar& widget, controls::ProgressBar& control);
/// An editable box accepts any text; any other shows its items trimmed and returns them unchanged. `chosen`
/// runs when a person picked an item or, in an editable box, typed.
void bind_to(QComboBox& widget, controls::ComboBox& control, const Action& chosen = {});

/// Runs an action, guarded, when a button is clicked or an entry of a menu is chosen.
void on_click(QAbstractButton& button, const Action& action);
void on_triggered(QAction& entry, const Action& action);

}  // namespace twk::screens
