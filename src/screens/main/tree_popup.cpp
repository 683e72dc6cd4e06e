#include "screens/main/tree_popup.hpp"

#include <QClipboard>
#include <QGuiApplication>
#include <QMenu>
#include <QShortcut>

#include "screens/widgets/application.hpp"
#include "screens/widgets/bind.hpp"
#include "screens/widgets/text.hpp"
#include "windows/chosen_commands.hpp"
#include "windows/main_window.hpp"
#include "windows/state/form1.hpp"
#include "windows/state/tree_commands.hpp"
#include "windows/tree/tree_popup.hpp"
#include "windows/unit_commands.hpp"

namespace twk::screens {
namespace {

void add_entry(QMenu& menu, windows::Desktop& session, int index, const QString& caption) {
  QAction* const action = menu.addAction(caption);
  action->setObjectName("mnupopup" + QString::number(index));
  bind_to(*action, session.form1.mnupopup.at(static_cast<std::size_t>(index)),
          [&session, index] { windows::mnupopup_Click(session, index); });
}

void add_custom_entries(QMenu& menu, windows::Desktop& session) {
  QAction* const line = menu.addSeparator();
  follow(*line, session.form1.mnupopup[12].visible, [line](bool shown) { line->setVisible(shown); });
  add_entry(menu, session, 13, {});
  add_entry(menu, session, 14, {});
}

void copy_chosen(windows::Desktop& session) {
  QStringList paths;
  for (const std::string& key : session.tree_commands.chosen)
    paths << to_qt(windows::shown_path(key));
  if (!paths.isEmpty())
    QGuiApplication::clipboard()->setText(paths.join('\n'));
}

/// Keys of the tree for what its menu does; the handlers ignore nodes that they are not for.
void add_keys(TreePane& tree, windows::Desktop& session) {
  const auto add = [&tree](const QKeySequence& keys, const Action& action) {
    auto* const key = new QShortcut(keys, &tree, nullptr, nullptr, Qt::WidgetShortcut);
    key->setAutoRepeat(false);
    QObject::connect(key, &QShortcut::activated, &tree, [action] { run_guarded(action); });
  };
  add(QKeySequence::Delete, [&session] { windows::mnupopup_Click(session, 4); });
  add(Qt::Key_F2, [&session] {
    const controls::TreeNode* const node = session.form1.TreeView1.selected();
    if (node != nullptr && node->image == "OU")
      windows::Rename_OU_Click(session);
    else
      windows::mnupopup_Click(session, 6);
  });
  add(QKeySequence::Copy, [&session] { copy_chosen(session); });
}

using Command = void (*)(windows::Desktop&);

void add_command(QMenu& menu, windows::Desktop& session, controls::MenuItem& control, const char* name,
                 const QString& caption, Command command) {
  QAction* const action = menu.addAction(caption);
  action->setObjectName(name);
  bind_to(*action, control, [&session, command] { command(session); });
}

void add_user_entries(QMenu& menu, windows::Desktop& session) {
  windows::TreeCommands& commands = session.tree_commands;
  add_entry(menu, session, 0, "De&tails");
  menu.addSeparator();
  add_command(menu, session, commands.Enable, "Enable", {}, windows::Enable_Click);
  add_command(menu, session, commands.Disable, "Disable", {}, windows::Disable_Click);
  add_command(menu, session, commands.Unlock, "Unlock", {}, windows::Unlock_Click);
  add_entry(menu, session, 2, "&Reset Password");
  add_command(menu, session, commands.Reset, "Reset", {}, windows::Reset_Click);
  menu.addSeparator();
  add_entry(menu, session, 4, "&Delete User");
  add_entry(menu, session, 5, "&Move User");
  add_command(menu, session, commands.Move_To, "Move_To", {}, windows::Move_To_Click);
  add_entry(menu, session, 6, "Re&name User");
  menu.addSeparator();
  add_entry(menu, session, 8, "Delete &Server Profile");
  add_entry(menu, session, 9, "Delete W&KS Profile");
  menu.addSeparator();
}

void add_unit_entries(QMenu& menu, windows::Desktop& session) {
  windows::TreeCommands& commands = session.tree_commands;
  add_command(menu, session, commands.New_Here, "New_Here", "&New User Here", windows::New_Here_Click);
  add_command(menu, session, commands.Import_Here, "Import_Here", "&Import Here…",
              windows::Import_Here_Click);
  add_command(menu, session, commands.Find_Here, "Find_Here", "&Find Here…", windows::Find_Here_Click);
  menu.addSeparator();
  add_entry(menu, session, 10, "Create OU");
  add_command(menu, session, commands.Rename_OU, "Rename_OU", "&Rename OU…", windows::Rename_OU_Click);
  add_command(menu, session, commands.Move_OU, "Move_OU", "&Move OU to…", windows::Move_OU_Click);
  add_command(menu, session, commands.Delete_OU, "Delete_OU", "&Delete OU…", windows::Delete_OU_Click);
  menu.addSeparator();
}

QMenu* make_popup(TreePane& tree, windows::Desktop& session) {
  auto* const menu = new QMenu(&tree);
  menu->setObjectName("mnupopup");
  menu->setToolTipsVisible(true);
  add_user_entries(*menu, session);
  add_unit_entries(*menu, session);
  QAction* const copy = menu->addAction("&Copy");
  copy->setObjectName("Copy_Path");
  on_triggered(*copy, [&session] { copy_chosen(session); });
  add_custom_entries(*menu, session);
  return menu;
}

}  // namespace

void add_tree_popup(TreePane& tree, windows::Desktop& session) {
  QMenu* const menu = make_popup(tree, session);
  add_keys(tree, session);
  tree.setContextMenuPolicy(Qt::CustomContextMenu);
  QObject::connect(&tree, &QWidget::customContextMenuRequested, menu,
                   [&tree, &session, menu](const QPoint& at) {
                     controls::TreeNode* const node = tree.node(tree.indexAt(at));
                     if (node == nullptr)
                       return;
                     // One of several that are selected speaks for all of them.
                     if (const QModelIndex index = tree.indexAt(at); tree.selectionModel()->isSelected(index))
                       tree.selectionModel()->setCurrentIndex(index, QItemSelectionModel::NoUpdate);
                     run_guarded([&] { windows::POPUP(session, *node); });
                     menu->popup(tree.viewport()->mapToGlobal(at));
                   });
}

}  // namespace twk::screens
