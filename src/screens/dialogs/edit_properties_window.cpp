#include "windows/editors/edit_properties.hpp"

#include <QGroupBox>
#include <QVBoxLayout>

#include "screens/program/windows.hpp"
#include "screens/widgets/dialog_buttons.hpp"
#include "screens/widgets/form.hpp"
#include "screens/widgets/text.hpp"
#include "windows/state/editor_windows.hpp"

namespace twk::screens {
namespace {

using windows::Edit_Properties;

/// A field under a caption that comes from the window's state.
template <typename Field>
void name_after(Field& field, const controls::Label& caption) {
  follow(field, caption.caption, [&field](const std::string& text) { field.setAccessibleName(to_qt(text)); });
}

void add_first_field(QFormLayout& form, windows::Desktop& session) {
  Edit_Properties& window = session.edit_properties;
  auto* const caption = new QLabel(form.parentWidget());
  auto* const field = new QLineEdit(form.parentWidget());
  field->setObjectName("W2K_Attribute");
  field->setMinimumWidth(field->fontMetrics().averageCharWidth() * 45);
  form.addRow(caption, field);
  bind_to(*caption, window.Property);
  follow(*field, window.W2K_Attribute_MaxLength, [field](int most) { field->setMaxLength(most); });
  bind_to(*field, window.W2K_Attribute, [&session] { windows::W2K_Attribute_Change(session); });
  name_after(*field, window.Property);
  // The focus does not start on a field that cannot be changed.
  follow(*field, window.W2K_Attribute.locked,
         [field](bool locked) { field->setFocusPolicy(locked ? Qt::ClickFocus : Qt::StrongFocus); });
}

void add_choices(QBoxLayout& box, const char* name, controls::ComboBox& control,
                 const controls::Label& caption) {
  auto* const choices = new QComboBox(box.parentWidget());
  choices->setObjectName(name);
  box.addWidget(choices);
  bind_to(*choices, control);
  name_after(*choices, caption);
}

/// One of the four controls for the value is shown.
void add_second_field(QFormLayout& form, windows::Desktop& session) {
  Edit_Properties& window = session.edit_properties;
  auto* const caption = new QLabel(form.parentWidget());
  auto* const place = new QWidget(form.parentWidget());
  auto* const box = new QVBoxLayout(place);
  box->setContentsMargins(0, 0, 0, 0);
  form.addRow(caption, place);
  bind_to(*caption, window.Label2);
  auto* const field = new QLineEdit(place);
  field->setObjectName("W2K_Propertry");
  box->addWidget(field);
  follow(*field, window.W2K_Propertry_MaxLength, [field](int most) { field->setMaxLength(most); });
  bind_to(*field, window.W2K_Propertry);
  name_after(*field, window.Label2);
  add_choices(*box, "WTS_YN", window.WTS_YN, window.Label2);
  add_choices(*box, "WTS_DRIVE_LETTER", window.WTS_DRIVE_LETTER, window.Label2);
  add_choices(*box, "WTS_TIME", window.WTS_TIME, window.Label2);
}

void add_kind(QDialog& dialog, QBoxLayout& box, Edit_Properties& window) {
  auto* const kind = new QGroupBox("Kind", &dialog);
  auto* const line = new QHBoxLayout(kind);
  auto* const person = new QRadioButton("&Person AD", kind);
  person->setObjectName("W2K_Person");
  auto* const exchange = new QRadioButton("E&xchange 2000", kind);
  exchange->setObjectName("W2K_2000");
  exchange->setToolTip("Only set if Exchange account is created");
  line->addWidget(person);
  line->addWidget(exchange);
  line->addStretch(1);
  box.addWidget(kind);
  bind_pair(*person, window.W2K_Person, {}, *exchange, window.W2K_2000, {});
  bind_to(*kind, window.kind);
}

}  // namespace

std::unique_ptr<QDialog> make_edit_properties(windows::Desktop& session, QWidget* parent) {
  auto dialog = std::make_unique<QDialog>(parent);
  dialog->setObjectName("Edit_Properties");
  follow_title(*dialog, session.edit_properties.title);
  auto* const box = new QVBoxLayout(dialog.get());
  auto* const form = new QFormLayout;
  box->addLayout(form);
  add_first_field(*form, session);
  add_second_field(*form, session);
  add_kind(*dialog, *box, session.edit_properties);
  add_hint(*dialog, *box, "hint", session.edit_properties.hint);
  box->addStretch(1);
  add_ok_cancel(
      *dialog, *box, "OK", [&session] { return windows::Edit_Properties_OK(session); },
      [&session] { windows::Edit_Properties_Cancel(session); });
  return dialog;
}

}  // namespace twk::screens
