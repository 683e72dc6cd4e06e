#include <QVBoxLayout>

#include "screens/program/windows.hpp"
#include "screens/widgets/dialog_buttons.hpp"
#include "screens/widgets/form.hpp"
#include "windows/groups/group_add.hpp"
#include "windows/state/group_windows.hpp"

namespace twk::screens {
namespace {

/// A frame of option buttons "NAME_0", "NAME_1" …, each with a separate state.
template <std::size_t size>
QGroupBox* make_choice(const QString& title, const char* name,
                       std::array<controls::OptionButton, size>& options,
                       const std::array<const char*, size>& captions, QWidget* parent) {
  auto* const box = new QGroupBox(title, parent);
  box->setObjectName(name);
  auto* const rows = new QVBoxLayout(box);
  for (std::size_t i = 0; i < size; ++i) {
    auto* const button = new QRadioButton(captions.at(i), box);
    button->setObjectName(QString(name) + "_" + QString::number(i));
    rows->addWidget(button);
    bind_to(*button, options.at(i), [&options, i] {
      for (std::size_t k = 0; k < size; ++k)
        options.at(k).value = k == i;
    });
  }
  rows->addStretch();
  return box;
}

}  // namespace

std::unique_ptr<QDialog> make_group_add(windows::Desktop& session, QWidget* parent) {
  windows::GroupAdd& state = session.group_add;
  auto window = std::make_unique<QDialog>(parent);
  QDialog* const dialog = window.get();
  dialog->setObjectName("GroupAdd");
  dialog->setWindowTitle("Add Group");
  auto* const rows = new QVBoxLayout(dialog);
  auto* const fields = new QFormLayout;
  rows->addLayout(fields);
  add_text(*fields, "&Name:", "GRP_Name", state.GRP_Name)->setFocus();
  add_text(*fields, "D&escription:", "GRP_DESCRIPTION", state.GRP_DESCRIPTION);
  auto* const choices = new QHBoxLayout;
  rows->addLayout(choices);
  choices->addWidget(
      make_choice<3>("Scope", "Option1", state.Option1, {"Domain &local", "&Global", "&Universal"}, dialog));
  choices->addWidget(
      make_choice<2>("Kind", "Option2", state.Option2, {"&Security", "&Distribution"}, dialog));
  rows->addStretch();
  add_ok_cancel(*dialog, *rows, "OKButton", [&session] { return windows::GroupAdd_OKButton_Click(session); });
  dialog->resize(420, dialog->sizeHint().height());
  return window;
}

}  // namespace twk::screens
