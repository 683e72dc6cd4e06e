#include "screens/widgets/edited_list.hpp"

#include <QAction>
#include <QPushButton>

#include "windows/editors/edit_properties.hpp"

namespace twk::screens {
namespace {

using controls::ListChange;

/// One entry, in the context menu of the list and as a button.
struct Entry {
  QString caption;
  const char* suffix;
  QKeySequence key;
  void (*act)(windows::Desktop& session, std::int32_t mode);
  bool wants_row;
};

void follow_selection(QWidget& button, QAction& action, controls::ListView& list) {
  const auto show = [&button, &action, &list] {
    const bool selected = list.selected() != nullptr;
    button.setEnabled(selected);
    action.setEnabled(selected);
  };
  show();
  keep(button, list.watch([show](const ListChange& change) {
    if (change.kind != ListChange::Kind::kResetting)
      show();
  }));
}

void add_entry(QBoxLayout& buttons, windows::Desktop& session, ListPane& pane, std::int32_t mode,
               const Entry& entry) {
  const Action act = [&session, mode, run = entry.act] { run(session, mode); };
  auto* const action = new QAction(entry.caption, &pane);
  action->setShortcut(entry.key);
  action->setShortcutContext(Qt::WidgetShortcut);
  on_triggered(*action, act);
  pane.addAction(action);
  auto* const button = new QPushButton(entry.caption, pane.parentWidget());
  button->setObjectName(pane.objectName() + entry.suffix);
  button->setAutoDefault(false);
  on_click(*button, act);
  buttons.addWidget(button);
  if (entry.wants_row)
    follow_selection(*button, *action, pane.list());
}

}  // namespace

ListPane* add_edited_list(QBoxLayout& box, windows::Desktop& session, controls::ListView& list,
                          const char* name, std::int32_t mode, const ListLook& look, const RowMenu& menu) {
  auto* const pane = new ListPane(list, look, box.parentWidget());
  pane->setObjectName(name);
  pane->setContextMenuPolicy(Qt::ActionsContextMenu);
  pane->on_activate = [&session, mode] { windows::Listviewmnu_Edit(session, mode); };
  box.addWidget(pane, 1);
  auto* const buttons = new QHBoxLayout;
  box.addLayout(buttons);
  if (menu.can_add)
    add_entry(*buttons, session, *pane, mode,
              {"&New…", "_New", Qt::Key_Insert, windows::Listviewmnu_New, false});
  add_entry(*buttons, session, *pane, mode, {"Ed&it…", "_Edit", {}, windows::Listviewmnu_Edit, true});
  if (!menu.delete_caption.isEmpty())
    add_entry(*buttons, session, *pane, mode,
              {menu.delete_caption, "_Delete", Qt::Key_Delete, windows::Listviewmnu_Delete, true});
  buttons->addStretch(1);
  return pane;
}

}  // namespace twk::screens
