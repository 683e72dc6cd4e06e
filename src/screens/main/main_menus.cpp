#include "screens/main/main_menus.hpp"

#include <QMenuBar>

#include "screens/program/program_windows.hpp"
#include "screens/widgets/bind.hpp"
#include "screens/widgets/icons.hpp"
#include "windows/main_window.hpp"
#include "windows/state/form1.hpp"

namespace twk::screens {
namespace {

struct Entry {
  int index;
  const char* caption;
  const char* icon;
  QKeySequence shortcut;
};

using Click = void (*)(windows::Desktop& session, int index);

QMenu* add_menu(QMainWindow& window, const QString& caption, const char* name) {
  QMenu* const menu = window.menuBar()->addMenu(caption);
  menu->setObjectName(name);
  menu->setToolTipsVisible(true);
  return menu;
}

template <std::size_t size>
void add_entry(QMenu& menu, windows::Desktop& session, std::array<controls::MenuItem, size>& items,
               const Entry& entry, Click click) {
  QAction* const action = menu.addAction(icon(entry.icon), entry.caption);
  action->setObjectName(menu.objectName() + QString::number(entry.index));
  action->setShortcut(entry.shortcut);
  bind_to(*action, items.at(static_cast<std::size_t>(entry.index)),
          [&session, click, index = entry.index] { click(session, index); });
}

void make_file_menu(QMainWindow& window, windows::Desktop& session) {
  QMenu* const menu = add_menu(window, "&File", "mnuFile");
  const auto add = [&](const Entry& entry) {
    add_entry(*menu, session, session.form1.mnuFile, entry, windows::mnuFile_Click);
  };
  add({1, "&Import Users", "IMPORTU", QKeySequence("Ctrl+I")});
  add({2, "&View Log File", "Vlog", QKeySequence("Ctrl+L")});
  add({3, "&Backup DataBase Files", "", {}});
  menu->addSeparator();
  add({5, "E&xit", "Exit1", QKeySequence("Ctrl+Q")});
}

void make_options_menu(QMainWindow& window, windows::Desktop& session) {
  QMenu* const menu = add_menu(window, "&Options", "mnuOption");
  const auto add = [&](const Entry& entry) {
    add_entry(*menu, session, session.form1.mnuOption, entry, windows::mnuOption_Click);
  };
  add({1, "M&ulti User Functions", "MultiUser", {}});
  add({2, "AD &Options", "", {}});
  menu->addSeparator();
  add({4, "&Groups", "Groups", {}});
  add({5, "&Manage OU", "OU", {}});
  add({6, "&Compact Database", "", {}});
  menu->addSeparator();
  add({windows::kCustomProperties, "Custom &Properties…", "", {}});
}

void make_help_menu(QMainWindow& window, windows::Desktop& session) {
  QMenu* const menu = add_menu(window, "&Help", "mnuHelp");
  const auto add = [&](const char* name, const char* caption, const Action& action) {
    QAction* const entry = menu->addAction(caption);
    entry->setObjectName(name);
    on_triggered(*entry, action);
    return entry;
  };
  add("mnuHelp1", "&Contents", [&session] {
    windows::Toolbar1_ButtonClick(session, "Help");
  })->setIcon(icon("Help"));
  add("mnuHelp3", "&Tip of the Day", [&window, &session] { show_tip(&window, session); });
  menu->addSeparator();
  add("mnuHelp2", "&About Tarnwick", [&window] { show_about(&window); });
}

}  // namespace

void make_menus(QMainWindow& window, windows::Desktop& session) {
  make_file_menu(window, session);
  make_options_menu(window, session);
  make_help_menu(window, session);
}

}  // namespace twk::screens
