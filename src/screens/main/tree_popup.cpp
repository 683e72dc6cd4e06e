#include "screens/main/tree_popup.hpp"

#include <QClipboard>
#include <QGuiApplication>
#include <QMenu>
#include <QShortcut>

#include "screens/widgets/application.hpp"
#include "screens/widgets/bind.hpp"
#include "screens/widgets/text.hpp"
#include "windows/main_window.hpp"
#include "windows/state/form1.hpp"
#include "windows/tree/tree_popup.hpp"

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

/// Keys of the tree for what its menu does; the handlers ignore nodes that they are not for.
void add_keys(TreePane& tree, windows::Desktop& session) {
  const auto add = [&tree](const QKeySequence& keys, const Action& action) {
    auto* const key = new QShortcut(keys, &tree, nullptr, nullptr, Qt::WidgetShortcut);
    key->setAutoRepeat(false);
    QObject::connect(key, &QShortcut::activated, &tree, [action] { run_guarded(action); });
  };
  add(QKeySequence::Delete, [&session] { windows::mnupopup_Click(session, 4); });
  add(Qt::Key_F2, [&session] { windows::mnupopup_Click(session, 6); });
  add(QKeySequence::Copy, [&session] {
    if (const controls::TreeNode* const node = session.form1.TreeView1.selected())
      QGuiApplication::clipboard()->setText(to_qt(windows::shown_path(node->key)));
  });
}

QMenu* make_popup(TreePane& tree, windows::Desktop& session) {
  auto* const menu = new QMenu(&tree);
  menu->setObjectName("mnupopup");
  menu->setToolTipsVisible(true);
  add_entry(*menu, session, 0, "De&tails");
  menu->addSeparator();
  add_entry(*menu, session, 2, "&Reset Password");
  menu->addSeparator();
  add_entry(*menu, session, 4, "&Delete User");
  add_entry(*menu, session, 5, "&Move User");
  add_entry(*menu, session, 6, "Re&name User");
  menu->addSeparator();
  add_entry(*menu, session, 8, "Delete &Server Profile");
  add_entry(*menu, session, 9, "Delete &WKS Profile");
  menu->addSeparator();
  add_entry(*menu, session, 10, "Create OU");
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
                     run_guarded([&] { windows::POPUP(session, *node); });
                     menu->popup(tree.viewport()->mapToGlobal(at));
                   });
}

}  // namespace twk::screens
