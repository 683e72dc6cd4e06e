#include "platform/ldap_text.hpp"
#include "screens/screen_test.hpp"
#include "session/form1.hpp"
#include "session/settings.hpp"

namespace twk::test {
namespace {

constexpr std::string_view kSales = "OU=Sales,DC=twk,DC=test";

class TreeCommands : public ScreenTest {
 protected:
  TreeCommands() {
    lab.services.directory.GetObject("LDAP://twk.test")->Create("organizationalUnit", "OU=Sales")->SetInfo();
    const platform::ObjectPtr user =
        lab.services.directory.GetObject("LDAP://twk.test/" + std::string(kNewStarters))
            ->Create("user", "CN=Smith\\, John");
    user->Put("samAccountName", "jsmith");
    user->SetInfo();
  }

  [[nodiscard]] controls::TreeNode* node(std::string_view key) const {
    return lab.session.form1.TreeView1.find(key);
  }
  QPoint place(std::string_view key) {
    const controls::TreeNode* const found = node(key);
    if (found == nullptr)
      throw std::logic_error("no node " + std::string(key));
    return window->tree().visualRect(window->tree().index_of(*found)).center();
  }
  void mouse(QEvent::Type type, const QPoint& at) {
    QWidget* const viewport = window->tree().viewport();
    const Qt::MouseButton button = type == QEvent::MouseMove ? Qt::NoButton : Qt::LeftButton;
    const Qt::MouseButtons buttons = type == QEvent::MouseButtonRelease ? Qt::NoButton : Qt::LeftButton;
    QMouseEvent event(type, at, viewport->mapToGlobal(at), button, buttons, Qt::ShiftModifier);
    QApplication::sendEvent(viewport, &event);
  }
  void drag_over(std::string_view from, std::string_view to) {
    window->tree().setFocus();
    const QPoint start = place(from);
    mouse(QEvent::MouseButtonPress, start);
    mouse(QEvent::MouseMove, start + QPoint(QApplication::startDragDistance(), 2));
    mouse(QEvent::MouseMove, place(to));
  }
  QAction* action(const char* name) { return find<QAction>(name); }

  const std::string john = "LDAP://twk.test/CN=Smith\\, John," + std::string(kNewStarters);
  const std::string moved_john = "LDAP://twk.test/CN=Smith\\, John," + std::string(kSales);
};

TEST_F(TreeCommands, AUserIsDraggedToAnotherOuWithShift) {
  open();
  drag_over(john, kSales);
  EXPECT_EQ(lab.session.form1.DropHighlight.get(), kSales);
  mouse(QEvent::MouseButtonRelease, place(kSales));
  settle();
  EXPECT_EQ(lab.path_of("jsmith"), moved_john);
  ASSERT_NE(node(moved_john), nullptr);
  EXPECT_EQ(window->tree().currentIndex(), window->tree().index_of(*node(moved_john)));
  EXPECT_TRUE(window->tree().isExpanded(window->tree().index_of(*node(kSales))));
  EXPECT_EQ(QApplication::overrideCursor(), nullptr);
}

TEST_F(TreeCommands, EscCancelsTheDrag) {
  open();
  drag_over(john, kSales);
  ASSERT_NE(QApplication::overrideCursor(), nullptr);
  QTest::keyClick(&window->tree(), Qt::Key_Escape);
  EXPECT_EQ(QApplication::overrideCursor(), nullptr);
  EXPECT_EQ(lab.session.form1.DropHighlight.get(), "");
  mouse(QEvent::MouseButtonRelease, place(kSales));
  EXPECT_EQ(lab.path_of("jsmith"), john);
}

TEST_F(TreeCommands, ADropOnAUserOrOutsideTheTreeMovesNobody) {
  open();
  drag_over(john, kSales);
  mouse(QEvent::MouseButtonRelease, QPoint(-50, -50));
  EXPECT_EQ(lab.path_of("jsmith"), john);
  drag_over(john, john);
  mouse(QEvent::MouseButtonRelease, place(john));
  EXPECT_EQ(lab.path_of("jsmith"), john);
}

TEST_F(TreeCommands, ARefusedMoveIsReportedInABox) {
  open();
  lab.directory.before = fail_at("MoveHere", 1, platform::ads_error::kAccessDenied);
  drag_over(john, kSales);
  expect_box("Cannot move Smith, John to Sales");
  mouse(QEvent::MouseButtonRelease, place(kSales));
  EXPECT_NE(node(john), nullptr);
}

TEST_F(TreeCommands, TheTreeScrollsWhileTheDragIsAtItsEdge) {
  for (int i = 0; i < 60; ++i) {
    lab.services.directory.GetObject("LDAP://twk.test")
        ->Create("organizationalUnit", "OU=Unit " + std::to_string(100 + i))
        ->SetInfo();
  }
  open();
  QScrollBar* const bar = window->tree().verticalScrollBar();
  ASSERT_GT(bar->maximum(), 0);
  window->tree().scrollTo(window->tree().index_of(*node(john)));
  window->tree().setFocus();
  const QPoint start = place(john);
  mouse(QEvent::MouseButtonPress, start);
  const int before = bar->value();
  ASSERT_LT(before, bar->maximum());
  mouse(QEvent::MouseMove, QPoint(start.x(), window->tree().viewport()->height() - 5));
  EXPECT_TRUE(QTest::qWaitFor([&] { return bar->value() >= before + 2; }, 3000));
  QTest::keyClick(&window->tree(), Qt::Key_Escape);
  const int stopped = bar->value();
  QTest::qWait(450);
  EXPECT_EQ(bar->value(), stopped);
}

TEST_F(TreeCommands, F5ReadsTheDomainAgain) {
  open();
  lab.services.directory.GetObject("LDAP://twk.test")->Create("organizationalUnit", "OU=Late")->SetInfo();
  window->tree().setFocus();
  QTest::keyClick(&window->tree(), Qt::Key_F5);
  settle();
  EXPECT_NE(node("OU=Late,DC=twk,DC=test"), nullptr);
  EXPECT_EQ(window->tree().currentIndex(), window->tree().index_of(*lab.session.form1.TreeView1.first()));
}

TEST_F(TreeCommands, ThePopupFitsTheNodeUnderThePointer) {
  open();
  auto* const menu = find<QMenu>("mnupopup");
  const auto popup_at = [&](std::string_view key) {
    Q_EMIT window->tree().customContextMenuRequested(place(key));
    EXPECT_TRUE(menu->isVisible());
    menu->close();
  };
  popup_at(john);
  EXPECT_EQ(lab.session.form1.TreeView1.selected(), node(john));
  EXPECT_FALSE(action("mnupopup10")->isEnabled());
  EXPECT_FALSE(action("mnupopup13")->isVisible());
  popup_at(kSales);
  EXPECT_TRUE(action("mnupopup10")->isEnabled());
  EXPECT_FALSE(action("mnupopup4")->isEnabled());
  expect_window([](QWidget& shown) {
    auto* const field = shown.findChild<QLineEdit*>();
    QTest::keyClicks(field, "North, \"cold\"");
    QTest::keyClick(field, Qt::Key_Return);
  });
  action("mnupopup10")->trigger();
  settle();
  ASSERT_NE(node("OU=North\\, \\\"cold\\\"," + std::string(kSales)), nullptr);
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
  EXPECT_EQ(window->tree().currentIndex(), window->tree().index_of(*node(john)));
}

TEST_F(TreeCommands, OptionsAreDescribedCheckedAndStored) {
  open();
  expect_window([this](QWidget& shown) {
    auto* const text = find<QLabel>("txtDescription", &shown);
    EXPECT_TRUE(text->text().startsWith("These options can be configured"));
    find<QRadioButton>("UseLDAP", &shown)->setFocus();
    EXPECT_TRUE(text->text().startsWith("Tells TWK to use a Global catalog server"));
    QTest::mouseClick(find<QRadioButton>("UseLDAP", &shown), Qt::LeftButton, {}, QPoint(8, 8));
    QTest::mouseClick(find<QCheckBox>("SkipUsers", &shown), Qt::LeftButton, {}, QPoint(8, 8));
    EXPECT_TRUE(text->text().startsWith("No users will be loaded"));
    type("PageSize", "250", &shown);
    click("btnApply", &shown);
    EXPECT_TRUE(text->text().startsWith("Saved."));
    QTest::keyClick(&shown, Qt::Key_Escape);
  });
  action("mnuOption2")->trigger();
  EXPECT_EQ(session::read_setting(lab.session, session::kADO, "PageSize"), "250");
  EXPECT_EQ(session::read_setting(lab.session, session::kADO, "Search"), "LDAP://");
  EXPECT_EQ(session::read_setting(lab.session, session::kADO, "SkipUsers"), "True");
}

TEST_F(TreeCommands, ALetterInANumberIsReportedInABox) {
  open();
  expect_window([this](QWidget& shown) {
    expect_box("PageSize must be a number.");
    QTest::keyClicks(find<QLineEdit>("PageSize", &shown), "x");
    EXPECT_EQ(find<QLineEdit>("PageSize", &shown)->text(), "1000");
    shown.close();
  });
  action("mnuOption2")->trigger();
}

TEST_F(TreeCommands, ManageOuKeepsTheChoiceAndEscDoesNot) {
  open();
  EXPECT_EQ(lab.session.form1.TreeView1.selected(), node(kNewStarters));
  expect_window([](QWidget& shown) {
    EXPECT_EQ(shown.objectName().toStdString(), "Select_OU");
    QTest::keyClick(&shown, Qt::Key_Escape);
  });
  action("mnuOption5")->trigger();
  EXPECT_EQ(lab.session.ManagedOU, "");
  expect_window([this](QWidget& shown) {
    EXPECT_EQ(find<QLabel>("OU", &shown)->text(), "Manage this OU: New Starters");
    QTest::mouseClick(find<QCheckBox>("SUBOU", &shown), Qt::LeftButton, {}, QPoint(8, 8));
    QTest::keyClick(&shown, Qt::Key_Return);
  });
  action("mnuOption5")->trigger();
  EXPECT_EQ(lab.session.ManagedOU, kNewStarters);
  EXPECT_FALSE(lab.session.ManageSubOUs);
  EXPECT_FALSE(action("mnuOption5")->isEnabled());
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

TEST_F(TreeCommands, ClosingTheWindowEndsTheSession) {
  open();
  window->close();
  EXPECT_TRUE(lab.session.form1.ended);
}

TEST_F(TreeCommands, NewUserTakesThePersonToTheFirstName) {
  open();
  window->tabs().setCurrentIndex(session::tab::kSite);
  EXPECT_EQ(status(), "Click on a site to edit");
  action("NewUser")->trigger();
  EXPECT_EQ(window->tabs().currentIndex(), session::tab::kNewUser);
  EXPECT_EQ(status(), "Ready.");
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

TEST_F(TreeCommands, TheMenuKeyOffersThePopupOfTheSelectedNode) {
  open();
  lab.session.form1.TreeView1.select(node(kSales));
  window->tree().setFocus();
  const QPoint at = place(kSales);
  QContextMenuEvent key(QContextMenuEvent::Keyboard, at, window->tree().viewport()->mapToGlobal(at));
  QApplication::sendEvent(window->tree().viewport(), &key);
  EXPECT_TRUE(find<QMenu>("mnupopup")->isVisible());
  EXPECT_TRUE(action("mnupopup10")->isEnabled());
  find<QMenu>("mnupopup")->close();
}

class WindowsAndSplitters : public ScreenTest {};

TEST_F(WindowsAndSplitters, AreAsTheyWereLeft) {
  open();
  auto* const panes = find<QSplitter>("panes");
  panes->setSizes({400, 600});
  const QList<int> left = panes->sizes();
  const QSize groups = find<QDialog>("Groupsfrm")->minimumSizeHint() + QSize(12, 34);
  find<QDialog>("Groupsfrm")->resize(groups);
  window->close();
  window = std::make_unique<screens::MainWindow>(lab.session);
  window->show();
  settle();
  EXPECT_EQ(find<QSplitter>("panes")->sizes(), left);
  EXPECT_EQ(find<QDialog>("Groupsfrm")->size(), groups);
  window->close();
  QSettings().clear();
}

}  // namespace
}  // namespace twk::test
