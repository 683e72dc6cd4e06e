#include <QHBoxLayout>
#include <QHeaderView>
#include <QVBoxLayout>

#include "directory/units.hpp"
#include "screens/program/windows.hpp"
#include "screens/widgets/form.hpp"
#include "screens/widgets/list_pane.hpp"
#include "screens/widgets/list_tools.hpp"
#include "screens/widgets/text.hpp"
#include "windows/state/directory_windows.hpp"
#include "windows/tree/find_user.hpp"

namespace twk::screens {
namespace {

void add_search_row(QVBoxLayout& rows, windows::Desktop& session, QDialog& dialog) {
  auto* const row = new QHBoxLayout;
  rows.addLayout(row);
  auto* const label = new QLabel("&Name:", &dialog);
  label->setObjectName("Label1");
  auto* const text = new QLineEdit(&dialog);
  text->setObjectName("txtFind");
  text->setPlaceholderText("Part of a name; * means any text");
  label->setBuddy(text);
  bind_to(*text, session.find_user.txtFind);
  row->addWidget(label);
  row->addWidget(text, 1);
  auto* const go = new QPushButton("&Search", &dialog);
  go->setObjectName("btnGo");
  go->setDefault(true);
  row->addWidget(go);
  on_click(*go, [&session] { windows::find_typed_user(session); });
  text->selectAll();
  text->setFocus();
}

ListPane* add_results(QVBoxLayout& rows, windows::Desktop& session, QDialog& dialog) {
  auto* const list =
      new ListPane(session.find_user.ListView1,
                   {.headings = {"Name", "Location", "Logon name", "Full name", "OU", "State", "Expires"},
                    .many_selected = true,
                    .sorted = true,
                    .empty_text = "No user is listed. Type a part of a name and press Search."},
                   &dialog);
  list->setObjectName("ListView1");
  list->setAccessibleName("Users found");
  list->header()->resizeSection(0, 160);
  list->header()->resizeSection(1, 260);
  offer_columns(*list, {3, 4, 6});
  rows.addWidget(list, 1);
  return list;
}

}  // namespace

std::unique_ptr<QDialog> make_find_user(windows::Desktop& session, QWidget* parent) {
  auto window = std::make_unique<QDialog>(parent);
  QDialog* const dialog = window.get();
  dialog->setObjectName("frmFindW2KUser");
  const std::string& unit = session.find_user.unit;
  dialog->setWindowTitle(unit.empty()
                             ? QString("Find User")
                             : "Find User in " + to_qt(directory::unit_in_words(unit)) + " and Below");
  auto* const rows = new QVBoxLayout(dialog);
  add_search_row(*rows, session, *dialog);
  ListPane* const list = add_results(*rows, session, *dialog);

  auto* const bottom = new QHBoxLayout;
  rows->addLayout(bottom);
  auto* const told = new QLabel(dialog);
  told->setObjectName("Label2");
  told->setTextFormat(Qt::PlainText);
  bind_to(*told, session.find_user.Label2);
  bottom->addWidget(told, 1);
  const auto select = [&session, dialog] {
    if (windows::btnSelectuser_Click(session))
      dialog->accept();
  };
  list->on_activate = select;
  auto* const choose = new QPushButton("Select &user", dialog);
  choose->setObjectName("btnSelectuser");
  choose->setAutoDefault(false);
  bind_to(*choose, session.find_user.btnSelectuser, select);
  bottom->addWidget(choose);
  auto* const close = new QPushButton("E&xit", dialog);
  close->setObjectName("btnExit");
  close->setAutoDefault(false);
  QObject::connect(close, &QPushButton::clicked, dialog, &QDialog::reject);
  bottom->addWidget(close);
  dialog->resize(760, 440);
  return window;
}

}  // namespace twk::screens
