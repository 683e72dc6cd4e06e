#include "screens/widgets/form.hpp"

#include <QEvent>
#include <QGridLayout>
#include <QScrollArea>
#include <algorithm>

namespace twk::screens {
namespace {

/// Texts that wrap need the more height the narrower the page is, which a scroll area does not ask for.
class PageScroller final : public QScrollArea {
 public:
  using QScrollArea::QScrollArea;

 protected:
  void resizeEvent(QResizeEvent* event) override {
    QScrollArea::resizeEvent(event);
    fit();
  }
  bool eventFilter(QObject* object, QEvent* event) override {
    const bool taken = QScrollArea::eventFilter(object, event);
    if (object == widget() && event->type() == QEvent::LayoutRequest)
      fit();
    return taken;
  }

 private:
  void fit() {
    const QLayout* const layout = widget() == nullptr ? nullptr : widget()->layout();
    if (layout == nullptr || !layout->hasHeightForWidth())
      return;
    const int width = std::max(viewport()->width(), layout->totalMinimumSize().width());
    const int height = std::max(layout->minimumHeightForWidth(width), 0);
    if (height != widget()->minimumHeight())
      widget()->setMinimumHeight(height);
  }
};

}  // namespace

QLineEdit* add_text(QFormLayout& form, const QString& caption, const char* name, controls::TextBox& control,
                    const Action& edited) {
  auto* const field = new QLineEdit(form.parentWidget());
  field->setObjectName(name);
  form.addRow(caption, field);
  bind_to(*field, control, edited);
  return field;
}

QLineEdit* add_result(QFormLayout& form, const QString& caption, const char* name,
                      controls::TextBox& control) {
  QLineEdit* const field = add_text(form, caption, name, control);
  field->setReadOnly(true);
  field->setFrame(false);
  field->setPalette(looking_like_the_window());
  return field;
}

QComboBox* make_editable_combo(const char* name, QWidget* parent) {
  auto* const box = new QComboBox(parent);
  box->setObjectName(name);
  box->setEditable(true);
  box->setInsertPolicy(QComboBox::NoInsert);
  // Completion would silently turn a small letter into a capital one.
  box->setCompleter(nullptr);
  return box;
}

QComboBox* add_combo(QFormLayout& form, const QString& caption, const char* name, controls::ComboBox& control,
                     const Action& chosen, bool editable) {
  QComboBox* box = nullptr;
  if (editable) {
    box = make_editable_combo(name, form.parentWidget());
  } else {
    box = new QComboBox(form.parentWidget());
    box->setObjectName(name);
  }
  form.addRow(caption, box);
  bind_to(*box, control, chosen);
  return box;
}

QCheckBox* add_check(QBoxLayout& box, const QString& caption, const char* name, controls::CheckBox& control,
                     const Action& clicked) {
  auto* const check = new QCheckBox(caption, box.parentWidget());
  check->setObjectName(name);
  box.addWidget(check);
  bind_to(*check, control, clicked);
  return check;
}

QPushButton* add_button(QBoxLayout& box, const QString& caption, const char* name, controls::Button& control,
                        const Action& clicked) {
  auto* const button = new QPushButton(caption, box.parentWidget());
  button->setObjectName(name);
  button->setAutoDefault(false);
  box.addWidget(button);
  bind_to(*button, control, clicked);
  return button;
}

QPushButton* add_button(QBoxLayout& box, const QString& caption, const char* name, const Action& clicked) {
  auto* const button = new QPushButton(caption, box.parentWidget());
  button->setObjectName(name);
  button->setAutoDefault(false);
  box.addWidget(button);
  on_click(*button, clicked);
  return button;
}

QLayout* make_options(QWidget& parent, std::span<const char* const> captions, const char* name,
                      controls::OptionGroup& control, const Action& clicked) {
  auto* const grid = new QGridLayout();
  std::vector<QRadioButton*> buttons;
  buttons.reserve(captions.size());
  for (const char* const caption : captions) {
    const int place = static_cast<int>(buttons.size());
    auto* const button = new QRadioButton(caption, &parent);
    button->setObjectName(name + QString("_") + QString::number(place));
    grid->addWidget(button, place / 2, place % 2);
    buttons.push_back(button);
  }
  bind_options(buttons, control, clicked);
  return grid;
}

QWidget* make_scrolled(QWidget& page, QWidget* parent) {
  auto* const scroll = new PageScroller(parent);
  scroll->setWidgetResizable(true);
  scroll->setFrameShape(QFrame::NoFrame);
  scroll->viewport()->setAutoFillBackground(false);
  scroll->setWidget(&page);
  page.setAutoFillBackground(false);
  return scroll;
}

}  // namespace twk::screens
