#include <QGroupBox>
#include <QLabel>
#include <QRadioButton>
#include <QShortcut>

#include "screens/main/tabs.hpp"
#include "screens/widgets/application.hpp"
#include "screens/widgets/bind.hpp"
#include "screens/widgets/form.hpp"
#include "screens/widgets/list_pane.hpp"
#include "screens/widgets/text.hpp"
#include "windows/mail/find_store.hpp"
#include "windows/site_tab.hpp"
#include "windows/state/form1.hpp"

namespace twk::screens {
namespace {

using windows::Desktop;
using windows::Form1;

constexpr int kExchangeLength = 30;

/// A field whose caption changes with the kind of site.
void add_named(QFormLayout& rows, controls::Label& caption, const char* own_caption, QWidget* field) {
  auto* const label = new QLabel(rows.parentWidget());
  label->setBuddy(field);
  rows.addRow(label, field);
  follow(*label, caption.caption, [label, own_caption](const std::string& text) {
    label->setText((text.empty() ? QString(own_caption) : to_qt(text)) + ":");
  });
}

QLineEdit* make_text(const char* name, controls::TextBox& control, QWidget* parent) {
  auto* const field = new QLineEdit(parent);
  field->setObjectName(name);
  field->setMaxLength(kExchangeLength);
  bind_to(*field, control);
  return field;
}

/// A field that can offer what a search found.
QComboBox* make_choice(const char* name, controls::ComboBox& control, QWidget* parent,
                       const Action& chosen = {}) {
  QComboBox* const field = make_editable_combo(name, parent);
  field->lineEdit()->setMaxLength(kExchangeLength);
  bind_to(*field, control, chosen);
  return field;
}

QWidget* make_kind(Desktop& session, QWidget* parent) {
  auto* const box = new QWidget(parent);
  auto* const row = new QHBoxLayout(box);
  row->setContentsMargins(0, 0, 0, 0);
  auto* const old_kind = new QRadioButton("Exchange 5.&5", box);
  auto* const new_kind = new QRadioButton("Exchange 2&000", box);
  old_kind->setObjectName("EXH5_0");
  new_kind->setObjectName("EXH5_1");
  row->addWidget(old_kind);
  row->addWidget(new_kind);
  row->addStretch();
  bind_to({old_kind, new_kind}, session.form1.EXH5, [&session] { windows::EXH5_Click(session); });
  return box;
}

QWidget* make_fields(Desktop& session, QWidget* parent) {
  Form1& form = session.form1;
  auto* const fields = new QWidget(parent);
  auto* const column = new QVBoxLayout(fields);
  column->setContentsMargins(0, 0, 0, 0);
  auto* const server = new QGroupBox("Home server", fields);
  auto* const server_rows = new QFormLayout(server);
  add_text(*server_rows, "Ser&ver:", "NTSERVER", form.NTSERVER)->setMaxLength(20);
  column->addWidget(server);
  auto* const mail_box = new QGroupBox("Mail", fields);
  auto* const mail_rows = new QFormLayout(mail_box);
  mail_rows->addRow("Kind:", make_kind(session, mail_box));
  add_text(*mail_rows, "E&xchange Server:", "EXSERVER", form.EXSERVER)->setMaxLength(20);
  add_named(*mail_rows, form.Label14, "Exchange Org", make_text("EXorg", form.EXorg, mail_box));
  add_named(
      *mail_rows, form.Label13, "Exchange Site",
      make_choice("EXSite", form.EXSite, mail_box, [&session] { windows::storage_group_chosen(session); }));
  QComboBox* const store = make_choice("Mail_Store", form.Mail_Store, mail_box);
  mail_rows->addRow("Mailbox Store:", store);
  // The field was hidden before it had its label.
  set_shown(*store, form.Mail_Store.visible);
  auto* const find = new QHBoxLayout();
  mail_rows->addRow(find);
  find->addStretch();
  add_button(*find, "&Find Store", "Find_Store", form.Find_Store,
             [&session] { windows::Find_Store_Click(session); });
  column->addWidget(mail_box);
  column->addStretch();
  return fields;
}

}  // namespace

QWidget* make_site_tab(Desktop& session, QWidget* parent) {
  Form1& form = session.form1;
  auto* const tab = new QWidget(parent);
  auto* const column = new QVBoxLayout(tab);
  auto* const halves = new QHBoxLayout();
  column->addLayout(halves, 1);
  auto* const list = new ListPane(
      form.ListView2, {.headings = {"Site"}, .empty_text = "No sites yet. Press New to make the first one."},
      tab);
  list->setObjectName("ListView2");
  list->setAccessibleName("Sites");
  list->on_click = [&session] { windows::ListView2_Click(session); };
  list->on_activate = [&session] { windows::Edit_Site(session); };
  list->on_delete = [&session] { windows::Delete_site(session); };
  QWidget* const fields = make_fields(session, tab);
  list->set_edited([&session, fields](controls::ListRow&, const std::string& typed) {
    windows::site_name_edited(session, typed);
    if (!session.form1.New_Site_Name.text.get().empty())
      fields->findChild<QLineEdit*>("NTSERVER")->setFocus();
  });
  halves->addWidget(list, 1);
  halves->addWidget(fields, 2);

  auto* const buttons = new QHBoxLayout();
  column->addLayout(buttons);
  add_button(*buttons, "&New", "New_Site", form.New_Site, [&session, list] {
    windows::New_Site(session);
    list->edit_selected();
  });
  add_button(*buttons, "&Edit", "Edit_Site", form.Edit_Site, [&session] { windows::Edit_Site(session); });
  add_button(*buttons, "&Save", "Save_Site", form.Save_Site, [&session] { windows::Save_Site(session); });
  add_button(*buttons, "&Delete", "Delete_site", form.Delete_site,
             [&session] { windows::Delete_site(session); });
  buttons->addStretch();
  add_button(*buttons, "Cance&l", "Site_Cancel", [&session] { windows::Site_Cancel(session); });
  for (QLineEdit* const field : fields->findChildren<QLineEdit*>()) {
    QObject::connect(field, &QLineEdit::returnPressed, field,
                     [&session] { run_guarded([&] { windows::Save_Site(session); }); });
  }
  // Esc only cancels the edit.
  auto* const escape =
      new QShortcut(Qt::Key_Escape, fields, nullptr, nullptr, Qt::WidgetWithChildrenShortcut);
  QObject::connect(escape, &QShortcut::activated, fields,
                   [&session] { run_guarded([&] { windows::Site_Escape(session); }); });
  return tab;
}

}  // namespace twk::screens
