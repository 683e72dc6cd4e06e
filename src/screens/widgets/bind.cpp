#include "screens/widgets/bind.hpp"

#include <QButtonGroup>
#include <QCheckBox>
#include <QFormLayout>
#include <QSignalBlocker>

#include "screens/widgets/application.hpp"
#include "screens/widgets/text.hpp"
#include "screens/widgets/tool_tip.hpp"

namespace twk::screens {
namespace {

/// Keeps a watch in the tree of objects.
class Keeper : public QObject {
 public:
  Keeper(QObject& owner, controls::Watch watch) : QObject(&owner), watch_(std::move(watch)) {}

 private:
  controls::Watch watch_;
};

void follow_enabled(QWidget& widget, const controls::Observable<bool>& enabled) {
  follow(widget, enabled, [&widget](bool on) { widget.setEnabled(on); });
}

void follow_shown(QWidget& widget, const controls::Observable<bool>& visible) {
  follow(widget, visible, [&widget](bool shown) { set_shown(widget, shown); });
}

void show_items(QComboBox& widget, const controls::ComboBox& control) {
  const QSignalBlocker quiet(widget);
  widget.clear();
  for (const std::string& item : control.items())
    widget.addItem(to_qt(item).trimmed());
}

void show_text(QComboBox& widget, const controls::ComboBox& control) {
  const QSignalBlocker quiet(widget);
  widget.setCurrentIndex(control.list_index());
  if (widget.isEditable() && widget.currentText() != to_qt(control.text.get()))
    widget.setEditText(to_qt(control.text.get()));
}

void choose_item(QComboBox& widget, controls::ComboBox& control) {
  const int index = widget.currentIndex();
  if (index >= 0 && index < static_cast<int>(control.items().size()))
    control.text = control.items()[static_cast<std::size_t>(index)];
}

}  // namespace

void keep(QObject& owner, controls::Watch watch) {
  new Keeper(owner, std::move(watch));
}

QPalette looking_like_the_window() {
  QPalette palette;
  palette.setColor(QPalette::Base, palette.color(QPalette::Window));
  return palette;
}

void set_shown(QWidget& widget, bool shown) {
  widget.setVisible(shown);
  const QWidget* const parent = widget.parentWidget();
  if (parent == nullptr)
    return;
  for (QFormLayout* form : parent->findChildren<QFormLayout*>()) {
    if (form->indexOf(&widget) >= 0)
      form->setRowVisible(&widget, shown);
  }
}

void bind_to(QLineEdit& widget, controls::TextBox& control, const Action& edited) {
  follow(widget, control.text, [&widget](const std::string& text) {
    if (widget.text() != to_qt(text))
      widget.setText(to_qt(text));
  });
  const auto show_state = [&widget, &control] {
    const bool open = control.enabled.get() && !control.locked.get();
    widget.setEnabled(control.enabled.get());
    widget.setReadOnly(control.locked.get());
    widget.setPalette(open ? QPalette() : looking_like_the_window());
  };
  follow(widget, control.enabled, [show_state](bool) { show_state(); });
  follow(widget, control.locked, [show_state](bool) { show_state(); });
  follow_shown(widget, control.visible);
  QObject::connect(&widget, &QLineEdit::textEdited, &widget, [&control, edited](const QString& text) {
    control.text = from_qt(text);
    run_guarded(edited);
  });
}

void bind_to(QLabel& widget, controls::Label& control) {
  widget.setTextFormat(Qt::PlainText);
  follow(widget, control.caption, [&widget](const std::string& text) { widget.setText(to_qt(text)); });
  follow_shown(widget, control.visible);
}

void bind_paced(QLabel& widget, controls::Label& control) {
  widget.setTextFormat(Qt::PlainText);
  follow_paced(widget, control.caption, [&widget](const std::string& text) { widget.setText(to_qt(text)); });
  follow_shown(widget, control.visible);
}

void bind_to(QCheckBox& widget, controls::CheckBox& control, const Action& clicked) {
  follow(widget, control.value, [&widget](int value) { widget.setChecked(value == 1); });
  follow_enabled(widget, control.enabled);
  follow_shown(widget, control.visible);
  QObject::connect(&widget, &QCheckBox::clicked, &widget, [&control, clicked](bool on) {
    control.value = on ? 1 : 0;
    run_guarded(clicked);
  });
}

void bind_to(std::initializer_list<QRadioButton*> widgets, controls::OptionGroup& control,
             const Action& clicked) {
  bind_options({widgets.begin(), widgets.size()}, control, clicked);
}

void bind_options(std::span<QRadioButton* const> widgets, controls::OptionGroup& control,
                  const Action& clicked) {
  auto* const group = new QButtonGroup(widgets.front()->parentWidget());
  int index = 0;
  for (QRadioButton* const widget : widgets) {
    group->addButton(widget, index++);
    follow_enabled(*widget, control.enabled);
  }
  follow(*group, control.index, [group](int chosen) {
    if (QAbstractButton* const button = group->button(chosen))
      button->setChecked(true);
  });
  QObject::connect(group, &QButtonGroup::idClicked, group, [&control, clicked](int id) {
    control.index = id;
    run_guarded(clicked);
  });
}

void bind_to(QRadioButton& widget, controls::OptionButton& control, const Action& clicked) {
  follow(widget, control.value, [&widget](bool on) {
    // A button of an exclusive set cannot be released by itself.
    QButtonGroup* const set = widget.group();
    const bool exclusive = widget.autoExclusive();
    if (set != nullptr)
      set->setExclusive(false);
    widget.setAutoExclusive(false);
    widget.setChecked(on);
    widget.setAutoExclusive(exclusive);
    if (set != nullptr)
      set->setExclusive(true);
  });
  follow_enabled(widget, control.enabled);
  QObject::connect(&widget, &QRadioButton::clicked, &widget, [clicked] { run_guarded(clicked); });
}

void bind_pair(QRadioButton& first_widget, controls::OptionButton& first, const Action& first_clicked,
               QRadioButton& second_widget, controls::OptionButton& second, const Action& second_clicked) {
  // Each pair is a separate set, even if several share a parent. A screen reader takes a button without a set
  // for a check box.
  auto* const set = new QButtonGroup(first_widget.parentWidget());
  set->addButton(&first_widget);
  set->addButton(&second_widget);
  const auto choose = [](controls::OptionButton& chosen, controls::OptionButton& other, QRadioButton& widget,
                         const Action& action) {
    return [&chosen, &other, &widget, action] {
      widget.setChecked(true);
      chosen.value = true;
      other.value = false;
      if (action)
        action();
    };
  };
  bind_to(first_widget, first, choose(first, second, first_widget, first_clicked));
  bind_to(second_widget, second, choose(second, first, second_widget, second_clicked));
}

void bind_to(QAbstractButton& widget, controls::Button& control, const Action& clicked) {
  const QString own_caption = widget.text();
  follow(widget, control.caption, [&widget, own_caption](const std::string& text) {
    widget.setText(text.empty() ? own_caption : to_qt(text));
  });
  follow_enabled(widget, control.enabled);
  follow_shown(widget, control.visible);
  on_click(widget, clicked);
}

void bind_to(QAction& widget, controls::MenuItem& control, const Action& triggered) {
  const QString own_caption = widget.text();
  follow(widget, control.caption, [&widget, own_caption](const std::string& text) {
    widget.setText(text.empty() ? own_caption : to_qt(text));
  });
  follow(widget, control.tool_tip,
         [&widget](const std::string& text) { widget.setToolTip(as_tool_tip(to_qt(text))); });
  follow(widget, control.enabled, [&widget](bool on) { widget.setEnabled(on); });
  follow(widget, control.visible, [&widget](bool shown) { widget.setVisible(shown); });
  on_triggered(widget, triggered);
}

void bind_to(QGroupBox& widget, controls::Frame& control) {
  const QString own_caption = widget.title();
  follow(widget, control.caption, [&widget, own_caption](const std::string& text) {
    // An ampersand in a name is not a mnemonic.
    widget.setTitle(text.empty() ? own_caption : to_qt(text).replace("&", "&&"));
  });
  follow(widget, control.tool_tip,
         [&widget](const std::string& text) { widget.setToolTip(as_tool_tip(to_qt(text))); });
  follow_shown(widget, control.visible);
}

void bind_to(QProgressBar& widget, controls::ProgressBar& control) {
  widget.setRange(0, 100);
  follow_paced(widget, control.value, [&widget](int value) { widget.setValue(value); });
}

void bind_to(QComboBox& widget, controls::ComboBox& control, const Action& chosen) {
  const auto show = [&widget, &control] {
    show_items(widget, control);
    show_text(widget, control);
  };
  show();
  keep(widget, control.watch_items(show));
  keep(widget, control.text.watch([&widget, &control] { show_text(widget, control); }));
  follow_enabled(widget, control.enabled);
  follow_shown(widget, control.visible);
  QObject::connect(&widget, &QComboBox::activated, &widget, [&widget, &control, chosen](int) {
    const std::string before = control.text;
    choose_item(widget, control);
    // An item put into an editable box is already reported through its text.
    if (!widget.isEditable() || control.text != before)
      run_guarded(chosen);
  });
  if (!widget.isEditable())
    return;
  QObject::connect(&widget, &QComboBox::editTextChanged, &widget, [&control, chosen](const QString& text) {
    if (control.text == from_qt(text))
      return;
    control.text = from_qt(text);
    run_guarded(chosen);
  });
}

void on_click(QAbstractButton& button, const Action& action) {
  QObject::connect(&button, &QAbstractButton::clicked, &button, [action] { run_guarded(action); });
}

void on_triggered(QAction& entry, const Action& action) {
  QObject::connect(&entry, &QAction::triggered, &entry, [action] { run_guarded(action); });
}

}  // namespace twk::screens
