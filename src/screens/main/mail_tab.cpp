#include <QGroupBox>
#include <QLabel>
#include <QVBoxLayout>

#include "screens/main/tabs.hpp"
#include "screens/widgets/edited_list.hpp"
#include "screens/widgets/form.hpp"
#include "windows/editors/edit_properties.hpp"
#include "windows/preferences_tab.hpp"
#include "windows/state/form1.hpp"

namespace twk::screens {
namespace {

QGroupBox* make_logon(windows::Desktop& session, QWidget* parent) {
  windows::Form1& form1 = session.form1;
  auto* const group = new QGroupBox("Exchange 5.5 directory", parent);
  auto* const box = new QVBoxLayout(group);
  auto* const rows = new QFormLayout;
  box->addLayout(rows);
  add_text(*rows, "LDAP &port:", "PORT", form1.PORT);
  auto* const own = new QVBoxLayout;
  rows->addRow(own);
  add_check(*own, "&Use Current Credentials", "Mail_Logon", form1.Mail_Logon,
            [&session] { windows::Mail_Logon_Click(session); });
  add_text(*rows, "&Account:", "txtAdmin", form1.txtAdmin);
  add_text(*rows, "Pass&word:", "txtPassword", form1.txtPassword)->setEchoMode(QLineEdit::Password);
  auto* const note = new QLabel("The password is kept in the settings as readable text.", group);
  note->setWordWrap(true);
  box->addWidget(note);
  auto* const line = new QHBoxLayout;
  box->addLayout(line);
  add_button(*line, "Sa&ve", "savemail", [&session] { windows::savemail_Click(session); });
  line->addStretch(1);
  return group;
}

QGroupBox* make_rows(windows::Desktop& session, QWidget* parent) {
  auto* const group = new QGroupBox("Properties of new mailboxes", parent);
  auto* const box = new QVBoxLayout(group);
  ListLook look;
  look.headings = {"Attribute", "Value"};
  look.empty_text = "No properties. New adds one.";
  ListPane* const list = add_edited_list(*box, session, session.form1.ListView8, "ListView8",
                                         windows::mode::kMail, look, {true, "Delete"});
  list->setAccessibleName("Properties of new mailboxes");
  return group;
}

}  // namespace

QWidget* make_mail_tab(windows::Desktop& session, QWidget* parent) {
  auto* const tab = new QWidget(parent);
  auto* const box = new QVBoxLayout(tab);
  box->addWidget(make_logon(session, tab));
  box->addWidget(make_rows(session, tab), 1);
  return tab;
}

}  // namespace twk::screens
