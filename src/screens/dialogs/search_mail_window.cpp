#include <QFormLayout>
#include <QHBoxLayout>
#include <QLabel>
#include <QVBoxLayout>

#include "screens/program/windows.hpp"
#include "screens/widgets/form.hpp"
#include "screens/widgets/text.hpp"
#include "screens/widgets/tree_pane.hpp"
#include "windows/mail/search_mail.hpp"
#include "windows/state/directory_windows.hpp"

namespace twk::screens {
namespace {

using windows::Desktop;
using windows::Serach_Mail;

constexpr std::size_t kLongestTitle = 40;

/// What does not fit into the title is shown in the window.
void follow_caption(QDialog& dialog, QVBoxLayout& rows, Serach_Mail& state) {
  auto* const told = new QLabel(&dialog);
  told->setObjectName("told");
  told->setTextFormat(Qt::PlainText);
  told->setWordWrap(true);
  rows.addWidget(told);
  follow(dialog, state.caption, [&dialog, told](const std::string& text) {
    dialog.setWindowTitle(text.size() > kLongestTitle ? "Select Mailbox" : to_qt(text));
    told->setText(to_qt(text));
  });
}

void add_search_row(QDialog& dialog, QVBoxLayout& rows, Desktop& session) {
  auto* const row = new QHBoxLayout;
  rows.addLayout(row);
  auto* const fields = new QFormLayout;
  row->addLayout(fields, 1);
  QLineEdit* const name = add_text(*fields, "&Name:", "Text1", session.serach_mail.Text1);
  add_text(*fields, "E&xchange Server:", "Text2", session.serach_mail.Text2);
  auto* const search = new QPushButton("&Search", &dialog);
  search->setObjectName("Search");
  search->setDefault(true);
  on_click(*search, [&session] { windows::search_again(session); });
  row->addWidget(search, 0, Qt::AlignBottom);
  name->selectAll();
  name->setFocus();
}

}  // namespace

std::unique_ptr<QDialog> make_search_mail(Desktop& session, QWidget* parent) {
  auto window = std::make_unique<QDialog>(parent);
  QDialog* const dialog = window.get();
  dialog->setObjectName("Serach_Mail");
  auto* const rows = new QVBoxLayout(dialog);
  add_search_row(*dialog, *rows, session);
  follow_caption(*dialog, *rows, session.serach_mail);
  auto* const tree = new TreePane(session.serach_mail.TreeView1, dialog);
  tree->setObjectName("TreeView1");
  tree->setAccessibleName("Mailboxes found");
  rows->addWidget(tree, 1);
  auto* const buttons = new QHBoxLayout;
  rows->addLayout(buttons);
  buttons->addStretch();
  add_button(*buttons, "&Delete Mailbox", "Delete_Mail", session.serach_mail.Delete_Mail, [&session, dialog] {
    if (windows::Delete_Mail(session))
      dialog->accept();
  });
  auto* const close = new QPushButton("&Close", dialog);
  close->setObjectName("Command2");
  close->setAutoDefault(false);
  QObject::connect(close, &QPushButton::clicked, dialog, &QDialog::reject);
  buttons->addWidget(close);
  dialog->resize(520, 420);
  return window;
}

}  // namespace twk::screens
