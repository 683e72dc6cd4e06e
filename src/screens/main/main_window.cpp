#include "screens/main/main_window.hpp"

#include <QApplication>
#include <QCloseEvent>
#include <QLabel>
#include <QMenuBar>
#include <QPointer>
#include <QScreen>
#include <QSplitter>
#include <QStatusBar>
#include <QVBoxLayout>

#include "directory/tree/tree.hpp"
#include "screens/main/badge.hpp"
#include "screens/main/main_menus.hpp"
#include "screens/main/tabs.hpp"
#include "screens/main/toolbar.hpp"
#include "screens/main/tree_popup.hpp"
#include "screens/program/program_windows.hpp"
#include "screens/program/windows.hpp"
#include "screens/widgets/application.hpp"
#include "screens/widgets/bind.hpp"
#include "screens/widgets/filter_field.hpp"
#include "screens/widgets/form.hpp"
#include "screens/widgets/mnemonics.hpp"
#include "screens/widgets/text.hpp"
#include "screens/widgets/tree_drag.hpp"
#include "screens/widgets/window_state.hpp"
#include "windows/main_window.hpp"
#include "windows/state/account_windows.hpp"
#include "windows/state/form1.hpp"
#include "windows/state/group_windows.hpp"
#include "windows/state/import_windows.hpp"
#include "windows/state/tree_commands.hpp"
#include "windows/unsaved_edits.hpp"

namespace twk::screens {

MainWindow::MainWindow(windows::Desktop& session) : session_(session) {
  setObjectName("form1");
  setWindowTitle(title_of(session_));
  make_panes();
  make_tabs();
  make_status_bar();
  make_commands();
  follow_session();
  settle_mnemonics(*this, letters_of_menus(*this));
  // At twice the scale, a screen has half the room.
  resize(QSize(1000, 700).boundedTo(screen()->availableSize()));
  restore_window(*this);
}

MainWindow::~MainWindow() = default;

void MainWindow::make_panes() {
  auto* const panes = new QSplitter(this);
  panes->setObjectName("panes");
  panes->setChildrenCollapsible(false);
  auto* const domain = new QWidget(panes);
  auto* const column = new QVBoxLayout(domain);
  column->setContentsMargins(0, 0, 0, 0);
  tree_ = new TreePane(session_.form1.TreeView1, domain);
  controls::TreeView& tree = session_.form1.TreeView1;
  QLineEdit* const filter = make_filter(
      *tree_, "Filter the tree", [this](const QString& text) { tree_->set_filter(text); },
      [&tree] { return tree.size(); }, domain);
  filter->setObjectName("tree_filter");
  filter->setToolTip("Looks at what the tree has read; Find searches the whole domain");
  column->addWidget(filter);
  column->addWidget(tree_, 1);
  tree_->setObjectName("TreeView1");
  tree_->setAccessibleName("Domain");
  tree_->on_expand = [this](controls::TreeNode& node) { windows::TreeView1_Expand(session_, node); };
  tree_->on_select = [this](controls::TreeNode& node) { windows::TreeView1_NodeClick(session_, node); };
  tree_->on_activate = [this](controls::TreeNode& node) { windows::TreeView1_DblClick(session_, node); };
  tree_->on_choice = [this](std::vector<std::string> keys) {
    session_.tree_commands.chosen = std::move(keys);
  };
  tabs_ = new QTabWidget(panes);
  tabs_->setObjectName("SSTab1");
  panes->setStretchFactor(0, 1);
  panes->setStretchFactor(1, 3);
  panes->setSizes({260, 740});
  setCentralWidget(panes);
}

void MainWindow::make_tabs() {
  tabs_->addTab(make_new_user_tab(session_, tabs_), "New &User");
  tabs_->addTab(make_details_tab(session_, tabs_), "User &Details");
  tabs_->addTab(make_log_tab(session_, tabs_), "&Log");
  tabs_->addTab(make_scrolled(*make_site_tab(session_, tabs_), tabs_), "&Site");
  tabs_->addTab(make_template_tab(session_, tabs_), "&Template");
  setup_tabs_ = new QTabWidget(tabs_);
  setup_tabs_->setObjectName("SSTab2");
  setup_tabs_->addTab(make_setup_tab(session_, setup_tabs_), "Set-up");
  setup_tabs_->addTab(make_preferences_tab(session_, setup_tabs_), "Preferences");
  setup_tabs_->addTab(make_scrolled(*make_mail_tab(session_, setup_tabs_), setup_tabs_), "Mail");
  setup_tabs_->addTab(make_scrolled(*make_w2k_tab(session_, setup_tabs_), setup_tabs_), "W2K");
  setup_tabs_->addTab(make_scrolled(*make_wts_tab(session_, setup_tabs_), setup_tabs_), "WTS");
  tabs_->addTab(setup_tabs_, "S&et-up");

  follow(*tabs_, session_.form1.SSTab1, [this](int index) { tabs_->setCurrentIndex(index); });
  connect(tabs_, &QTabWidget::currentChanged, this, [this](int index) {
    session_.form1.SSTab1 = index;
    windows::SSTab1_Click(session_);
  });
  for (int i = 0; i < setup_tabs_->count(); ++i) {
    follow(*setup_tabs_, session_.form1.SSTab2.at(static_cast<std::size_t>(i)).visible,
           [this, i](bool shown) { setup_tabs_->setTabVisible(i, shown); });
  }
}

void MainWindow::make_status_bar() {
  controls::StatusBar& status = session_.form1.StatusBar1;
  const auto add_panel = [this](const controls::Observable<std::string>& text, int stretch) {
    auto* const panel = new QLabel(this);
    panel->setTextFormat(Qt::PlainText);
    follow_paced(*panel, text, [panel](const std::string& shown) { panel->setText(to_qt(shown)); });
    statusBar()->addWidget(panel, stretch);
    return panel;
  };
  statusBar()->addWidget(make_badge(session_, this));
  add_panel(status.panel1, 1)->setObjectName("panel1");
  add_panel(status.panel2, 0)->setObjectName("panel2");
  add_panel(status.panel3, 0)->setObjectName("panel3");
}

void MainWindow::make_commands() {
  make_menus(*this, session_);
  toolbar_ = make_toolbar(*this, session_);
  // A key that reads everything again belongs to the tree: pressed in a field, it would drop what is typed.
  auto* const refresh = toolbar_->findChild<QAction*>("Refresh");
  refresh->setShortcutContext(Qt::WidgetShortcut);
  tree_->addAction(refresh);
  add_tree_popup(*tree_, session_);
  add_tree_drag(*tree_, session_);
}

void MainWindow::follow_session() {
  windows::Form1& form = session_.form1;
  follow(*this, form.enabled, [this, had_focus = std::make_shared<QPointer<QWidget>>()](bool on) {
    // A field that is disabled for the time of a run would lose the focus to the tree for good.
    if (!on)
      *had_focus = focusWidget();
    for (QWidget* const part :
         {centralWidget(), static_cast<QWidget*>(menuBar()), static_cast<QWidget*>(toolbar_)})
      part->setEnabled(on);
    if (on && *had_focus != nullptr)
      (*had_focus)->setFocus();
  });
  keep(*this, form.SetFocus.watch([this](std::string_view name) {
    if (auto* const control = findChild<QWidget*>(to_qt(name)))
      control->setFocus();
  }));
  keep(*this, form.ShowHelp.watch([this](std::string_view topic) { show_help(this, to_qt(topic)); }));
  keep(*this, form.mouse_pointer.watch([&form] {
    if (form.mouse_pointer == 11)
      QApplication::setOverrideCursor(Qt::WaitCursor);
    else
      QApplication::restoreOverrideCursor();
  }));
  keep(*this, form.ended.watch([this] {
    if (session_.form1.ended)
      close();
  }));
  cancel_import_ = make_cancel_import(session_, this);
  follow(*this, session_.cancel_import.visible, [this](bool shown) { cancel_import_->setVisible(shown); });
  file_progress_ = make_file_progress(session_, this);
  follow(*this, session_.file_progress.visible, [this](bool shown) { file_progress_->setVisible(shown); });
  for (const auto* const beside : {&cancel_import_, &file_progress_})
    settle_mnemonics(**beside);
  follow(*this, session_.groups.visible, [this](bool shown) { show_groups(shown); });
}

void MainWindow::show_groups(bool shown) {
  if (shown && groups_ == nullptr) {
    groups_ = make_groups(session_, this);
    settle_mnemonics(*groups_);
    restore_beside(*groups_);
  }
  if (groups_ != nullptr)
    groups_->setVisible(shown);
}

void MainWindow::closeEvent(QCloseEvent* event) {
  // A run in progress is stopped first: nothing may end between two steps of a creation.
  if (!session_.form1.enabled.get()) {
    session_.form1.ended = false;
    session_.form1.StatusBar1.panel1 =
        session_.groups.visible ? "Close the groups window first." : "Stop the run first.";
    QApplication::beep();
    event->ignore();
    return;
  }
  bool may_close = false;
  run_guarded([&] { may_close = windows::may_leave_all(session_); });
  if (!may_close) {
    session_.form1.ended = false;
    event->ignore();
    return;
  }
  save_window(*this);
  QMainWindow::closeEvent(event);
  windows::Form_Unload(session_);
}

}  // namespace twk::screens
