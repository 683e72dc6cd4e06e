#include "screens/screen_test.hpp"
#include "session/settings.hpp"
#include "support/details_world.hpp"
#include "windows/state/form1.hpp"
#include "windows/state/group_windows.hpp"

namespace twk::test {
namespace {

constexpr std::string_view kSales = "OU=Sales,DC=twk,DC=test";

class TreeCommands : public ScreenTest {
 protected:
  TreeCommands() {
    add_unit(lab, "Sales");
    add_user(lab, "Smith, John", "jsmith");
  }

  [[nodiscard]] controls::TreeNode* node(std::string_view key) const {
    return lab.session.form1.TreeView1.find(key);
  }
  QModelIndex index(std::string_view key) {
    const controls::TreeNode* const found = node(key);
    if (found == nullptr)
      throw std::logic_error("no node " + std::string(key));
    return window->tree().index_of(*found);
  }
  QPoint place(std::string_view key) { return window->tree().visualRect(index(key)).center(); }
  void mouse(QEvent::Type type, const QPoint& at) {
    QWidget* const viewport = window->tree().viewport();
    const Qt::MouseButton button = type == QEvent::MouseMove ? Qt::NoButton : Qt::LeftButton;
    const Qt::MouseButtons buttons = type == QEvent::MouseButtonRelease ? Qt::NoButton : Qt::LeftButton;
    QMouseEvent event(type, at, viewport->mapToGlobal(at), button, buttons, Qt::ShiftModifier);
    QApplication::sendEvent(viewport, &event);
  }
  void drag_over(std::string_view from, const QPoint& to) {
    window->tree().setFocus();
    const QPoint start = place(from);
    mouse(QEvent::MouseButtonPress, start);
    mouse(QEvent::MouseMove, start + QPoint(QApplication::startDragDistance(), 2));
    mouse(QEvent::MouseMove, to);
  }
  void show_menu_at(std::string_view key, QContextMenuEvent::Reason reason) {
    const QPoint at = place(key);
    QContextMenuEvent event(reason, at, window->tree().viewport()->mapToGlobal(at));
    QApplication::sendEvent(window->tree().viewport(), &event);
    EXPECT_TRUE(find<QMenu>("mnupopup")->isVisible());
    find<QMenu>("mnupopup")->close();
  }
  QAction* action(const char* name) { return find<QAction>(name); }

  const std::string john = "LDAP://twk.test/CN=Smith\\, John," + std::string(kNewStarters);
  const std::string moved_john = "LDAP://twk.test/CN=Smith\\, John," + std::string(kSales);
};

TEST_F(TreeCommands, OpeningANodeWithTheKeyboardShowsItsUsers) {
  open();
  const controls::TreeNode& users = *node("CN=Users,DC=twk,DC=test");
  screens::TreePane& tree = window->tree();
  tree.setFocus();
  tree.setCurrentIndex(index(users.key));
  QTest::keyClick(&tree, Qt::Key_Right);
  settle();
  EXPECT_TRUE(tree.isExpanded(index(users.key)));
  EXPECT_EQ(tree.model()->rowCount(index(users.key)), static_cast<int>(users.children.size()));
  EXPECT_EQ(users.children.front()->image, "USER");
}

TEST_F(TreeCommands, AUserIsDraggedToAnotherOuWithShift) {
  open();
  drag_over(john, place(kSales));
  EXPECT_EQ(lab.session.form1.DropHighlight.get(), kSales);
  mouse(QEvent::MouseButtonRelease, place(kSales));
  settle();
  EXPECT_EQ(lab.path_of("jsmith"), moved_john);
  EXPECT_EQ(window->tree().currentIndex(), index(moved_john));
  EXPECT_TRUE(window->tree().isExpanded(index(kSales)));
  EXPECT_EQ(QApplication::overrideCursor(), nullptr);
}

TEST_F(TreeCommands, EscAndADropOutsideTheTreeMoveNobody) {
  open();
  for (const bool escape : {true, false}) {
    drag_over(john, place(kSales));
    ASSERT_NE(QApplication::overrideCursor(), nullptr);
    if (escape)
      QTest::keyClick(&window->tree(), Qt::Key_Escape);
    mouse(QEvent::MouseButtonRelease, escape ? place(kSales) : QPoint(-50, -50));
    EXPECT_EQ(QApplication::overrideCursor(), nullptr);
    EXPECT_EQ(lab.session.form1.DropHighlight.get(), "");
    EXPECT_EQ(lab.path_of("jsmith"), john);
  }
}

TEST_F(TreeCommands, TheTreeScrollsWhileTheDragIsAtItsEdge) {
  for (int i = 0; i < 60; ++i)
    add_unit(lab, "Unit " + std::to_string(100 + i));
  open();
  QScrollBar* const bar = window->tree().verticalScrollBar();
  window->tree().scrollTo(index(john));
  const int before = bar->value();
  ASSERT_LT(before, bar->maximum());
  drag_over(john, QPoint(20, window->tree().viewport()->height() - 5));
  EXPECT_TRUE(QTest::qWaitFor([&] { return bar->value() >= before + 2; }, 3000));
  QTest::keyClick(&window->tree(), Qt::Key_Escape);
  const int stopped = bar->value();
  QTest::qWait(450);
  EXPECT_EQ(bar->value(), stopped);
}

TEST_F(TreeCommands, F5ReadsTheDomainAgain) {
  open();
  add_unit(lab, "Late");
  window->tree().setFocus();
  QTest::keyClick(&window->tree(), Qt::Key_F5);
  settle();
  EXPECT_NE(node("OU=Late,DC=twk,DC=test"), nullptr);
  EXPECT_EQ(window->tree().currentIndex(), index(lab.session.form1.TreeView1.first()->key));
}

TEST_F(TreeCommands, KeysOfTheTreeDeleteRenameAndCopy) {
  open();
  screens::TreePane& tree = window->tree();
  tree.setFocus();
  tree.setCurrentIndex(index(john));
  for (const auto& [key, name] : {std::pair{Qt::Key_Delete, "MultiUser"}, {Qt::Key_F2, "RenameUser"}}) {
    expect_window([name = name](QWidget& shown) {
      EXPECT_EQ(shown.objectName(), name);
      QTest::keyClick(&shown, Qt::Key_Escape);
    });
    QTest::keyClick(&tree, key);
    window->activateWindow();
    settle();
  }
  QTest::keySequence(&tree, QKeySequence::Copy);
  EXPECT_EQ(QGuiApplication::clipboard()->text(),
            "CN=Smith\\, John," + QString::fromStdString(std::string(kNewStarters)));
}

TEST_F(TreeCommands, ThePopupFitsTheNodeUnderThePointerAndOfTheMenuKey) {
  open();
  show_menu_at(john, QContextMenuEvent::Mouse);
  EXPECT_EQ(lab.session.form1.TreeView1.selected(), node(john));
  EXPECT_FALSE(action("mnupopup10")->isEnabled());
  EXPECT_FALSE(action("mnupopup13")->isVisible());
  lab.session.form1.TreeView1.select(node(kSales));
  show_menu_at(kSales, QContextMenuEvent::Keyboard);
  EXPECT_TRUE(action("mnupopup10")->isEnabled());
  EXPECT_FALSE(action("mnupopup4")->isEnabled());
  expect_window([](QWidget& shown) {
    auto* const field = shown.findChild<QLineEdit*>();
    QTest::keyClicks(field, "North, \"cold\"");
    QTest::keyClick(field, Qt::Key_Return);
  });
  action("mnupopup10")->trigger();
  settle();
  EXPECT_NE(node("OU=North\\, \\\"cold\\\"," + std::string(kSales)), nullptr);
}

TEST_F(TreeCommands, FindOpensTheTreeAtTheUser) {
  open();
  node(kNewStarters)->expanded = false;
  expect_window([this](QWidget& shown) {
    type("txtFind", "nobody", &shown);
    QTest::keyClick(&shown, Qt::Key_Return);
    EXPECT_EQ(find<QLabel>("Label2", &shown)->text(), "No user found");
    EXPECT_FALSE(find<QPushButton>("btnSelectuser", &shown)->isEnabled());
    type("txtFind", "Smith, J", &shown);
    QTest::keyClick(&shown, Qt::Key_Return);
    click("btnSelectuser", &shown);
    EXPECT_FALSE(shown.isVisible());
  });
  action("FIND")->trigger();
  settle();
  EXPECT_EQ(window->tree().currentIndex(), index(john));
}

TEST_F(TreeCommands, OptionsAreDescribedCheckedAndStored) {
  open();
  expect_window([this](QWidget& shown) {
    auto* const text = find<QLabel>("txtDescription", &shown);
    find<QRadioButton>("UseLDAP", &shown)->setFocus();
    EXPECT_TRUE(
        QTest::qWaitFor([&] { return text->text().startsWith("Tells TWK to use a Global catalog server"); }));
    for (const char* const option :
         {"UseLDAP", "LoadAllUsersoption", "Sortoff", "SkipUsers", "SkipGroups", "TemplateGroups"})
      click(option, &shown);
    expect_box("PageSize must be a number.");
    QTest::keyClicks(find<QLineEdit>("PageSize", &shown), "x");
    type("PageSize", "250", &shown);
    type("UserLimit", "77", &shown);
    click("btnApply", &shown);
    EXPECT_TRUE(text->text().startsWith("Saved."));
    QTest::keyClick(&shown, Qt::Key_Escape);
  });
  action("mnuOption2")->trigger();
  for (const auto& [name, value] : {std::pair("PageSize", "250"),
                                    {"UserLimit", "77"},
                                    {"Search", "LDAP://"},
                                    {"LoadAllUsers", "True"},
                                    {"Sort", "False"},
                                    {"SkipUsers", "True"},
                                    {"SkipGroups", "True"},
                                    {"TemplateGroupsOnly", "True"}})
    EXPECT_EQ(session::read_setting(lab.session, session::kADO, name), value) << name;
}

TEST_F(TreeCommands, ManageOuKeepsTheChoiceAndEscDoesNot) {
  open();
  for (const bool kept : {false, true}) {
    expect_window([this, kept](QWidget& shown) {
      EXPECT_EQ(find<QLabel>("OU", &shown)->text(), "Manage this OU: New Starters");
      click("SUBOU", &shown);
      QTest::keyClick(&shown, kept ? Qt::Key_Return : Qt::Key_Escape);
    });
    action("mnuOption5")->trigger();
    EXPECT_EQ(lab.session.ManagedOU, kept ? kNewStarters : "");
    EXPECT_NE(action("mnuOption5")->isEnabled(), kept);
  }
  EXPECT_FALSE(lab.session.ManageSubOUs);
}

TEST_F(TreeCommands, MenusAndToolbarAreOffWhileARunIsOn) {
  open();
  lab.session.form1.enabled = false;
  EXPECT_FALSE(window->menuBar()->isEnabled());
  EXPECT_FALSE(find<QToolBar>("Toolbar1")->isEnabled());
  lab.session.form1.ended = true;
  EXPECT_TRUE(window->isVisible()) << "a run is not ended between two steps";
  lab.session.form1.enabled = true;
  EXPECT_TRUE(find<QToolBar>("Toolbar1")->isEnabled());
  action("Exit1")->trigger();
  EXPECT_FALSE(window->isVisible());
}

TEST_F(TreeCommands, NewUserTakesThePersonToTheFirstNameAndClosingEndsTheSession) {
  open();
  window->tabs().setCurrentIndex(windows::tab::kSite);
  EXPECT_EQ(status(), "Click on a site to edit");
  action("NewUser")->trigger();
  EXPECT_EQ(window->tabs().currentIndex(), windows::tab::kNewUser);
  EXPECT_EQ(window->focusWidget(), find<QLineEdit>("strFirst"));
  window->close();
  EXPECT_TRUE(lab.session.form1.ended);
}

TEST_F(TreeCommands, CompactionAndBackupAreCommandsOfTheMenus) {
  open();
  expect_box("Are you sure you want to continue ?", QMessageBox::Yes);
  expect_box("Do you want to remove groups from the templates that no longer exist ?", QMessageBox::No);
  action("mnuOption6")->trigger();
  EXPECT_EQ(status(), "Completed.");
  action("mnuFile3")->trigger();
  EXPECT_EQ(status(), "Databases Backed up ( *.BAK)...");
}

TEST_F(TreeCommands, MnemonicsAndShortcutsAreUnique) {
  open();
  std::map<QString, QString> shortcuts;
  for (const QAction* const entry : window->findChildren<QAction*>()) {
    const QString keys = entry->shortcut().toString();
    if (keys.isEmpty() || entry->shortcutContext() != Qt::WindowShortcut)
      continue;
    EXPECT_TRUE(shortcuts.emplace(keys, entry->text()).second) << keys.toStdString();
  }
  for (const QMenu* const menu : window->menuBar()->findChildren<QMenu*>()) {
    std::set<QChar> used;
    for (const QAction* const entry : menu->actions()) {
      const qsizetype at = entry->text().indexOf('&');
      if (at >= 0) {
        EXPECT_TRUE(used.insert(entry->text().at(at + 1).toLower()).second) << entry->text().toStdString();
      }
    }
  }
}

TEST_F(TreeCommands, WindowsAndSplittersAreAsTheyWereLeft) {
  open();
  auto* const panes = find<QSplitter>("panes");
  panes->setSizes({400, 600});
  const QList<int> left = panes->sizes();
  lab.session.groups.visible = true;
  const QSize groups = find<QDialog>("Groupsfrm")->minimumSizeHint() + QSize(12, 34);
  find<QDialog>("Groupsfrm")->resize(groups);
  lab.session.groups.visible = false;
  window->close();
  window = std::make_unique<screens::MainWindow>(lab.session);
  window->show();
  settle();
  EXPECT_EQ(find<QSplitter>("panes")->sizes(), left);
  lab.session.groups.visible = true;
  EXPECT_EQ(find<QDialog>("Groupsfrm")->size(), groups);
  lab.session.groups.visible = false;
  window->close();
  QSettings().clear();
}

}  // namespace
}  // namespace twk::test
