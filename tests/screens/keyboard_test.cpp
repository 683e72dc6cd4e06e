#include "controls/tree_view.hpp"
#include "screens/screen_test.hpp"
#include "support/details_world.hpp"

namespace twk::test {
namespace {

/// A person who has no mouse: keys go to what has the focus, and to nothing else.
class Keyboard : public ScreenTest {
 protected:
  // However slowly or fast the machine types, each letter begins another search of the tree.
  Keyboard() { QApplication::setKeyboardInputInterval(-1); }
  ~Keyboard() override { QApplication::setKeyboardInputInterval(interval_); }

  static void key(Qt::Key key, Qt::KeyboardModifiers modifiers = {}) {
    QTest::keyClick(QApplication::focusWidget(), key, modifiers);
    settle();
  }
  static void keys(const QString& text) { QTest::keyClicks(QApplication::focusWidget(), text); }
  static void tab_to(const QString& name) {
    constexpr int kMost = 100;
    for (int i = 0; i < kMost && QApplication::focusWidget()->objectName() != name; ++i)
      key(Qt::Key_Tab);
    ASSERT_EQ(QApplication::focusWidget()->objectName(), name);
  }
  /// A window that the keys did not close must not hold up the test.
  static void end(QWidget& shown) {
    if (shown.isVisible())
      shown.close();
  }
  /// As a window manager does when a window over it is closed.
  static void activate(QWidget& shown) {
    shown.activateWindow();
    settle();
  }
  /// Goes to a unit of the tree and to the first in it, which opens it when it is closed.
  void go_into(const QString& unit) {
    activate(*window);
    tab_to("TreeView1");
    keys(unit);
    const controls::TreeView& tree = lab.session.form1.TreeView1;
    for (int press = 0; press < 2 && tree.selected()->image != "USER"; ++press)
      key(Qt::Key_Right);
    EXPECT_EQ(tree.selected()->key, lab.path_of("Ada.Larch"));
  }
  /// The menu of the current node, by the key for it, and an entry by its letter.
  void choose_from_menu(Qt::Key letter) {
    screens::TreePane& tree = window->tree();
    const QPoint at = tree.visualRect(tree.currentIndex()).center();
    QContextMenuEvent menu(QContextMenuEvent::Keyboard, at, tree.viewport()->mapToGlobal(at));
    QApplication::sendEvent(tree.viewport(), &menu);
    QTest::keyClick(QApplication::activePopupWidget(), letter);
    settle();
  }

 private:
  int interval_ = QApplication::keyboardInputInterval();
};

TEST_F(Keyboard, IsAllThatCreatesEditsMovesAndDeletesAUser) {
  add_unit(lab, "Sales");
  open();
  tab_to("TreeView1");
  keys("N");
  tab_to("strFirst");
  keys("Ada");
  tab_to("strLast");
  keys("Larch");
  key(Qt::Key_Return);
  EXPECT_EQ(status(), "User Created.");

  go_into("N");
  key(Qt::Key_Return);
  tab_to("UM_Office");
  keys("London");
  key(Qt::Key_S, Qt::ControlModifier);
  EXPECT_EQ(lab.property("Ada.Larch", "physicalDeliveryOfficeName"), "London") << status();

  tab_to("TreeView1");
  expect_window([](QWidget& shown) {
    tab_to("units_filter");
    keys("Sales");
    tab_to("units");
    key(Qt::Key_Space);
    tab_to("Move");
    key(Qt::Key_Space);
    end(shown);
  });
  choose_from_menu(Qt::Key_O);
  EXPECT_THAT(lab.path_of("Ada.Larch"), testing::EndsWith(",OU=Sales,DC=twk,DC=test"));

  go_into("S");
  expect_window([this](QWidget& shown) {
    tab_to("Delete_NT_Account");
    key(Qt::Key_Space);
    tab_to("Del_User");
    expect_window([](QWidget& box) {
      activate(box);
      key(Qt::Key_Tab);  // from No, the default, to Yes
      key(Qt::Key_Space);
      end(box);
    });
    key(Qt::Key_Space);
    activate(shown);
    key(Qt::Key_Escape);
    end(shown);
  });
  key(Qt::Key_Delete);
  EXPECT_EQ(lab.path_of("Ada.Larch"), "");
}

}  // namespace
}  // namespace twk::test
