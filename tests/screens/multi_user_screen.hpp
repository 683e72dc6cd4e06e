#pragma once

#include "platform/adsi.hpp"
#include "screens/screen_test.hpp"
#include "support/details_world.hpp"
#include "windows/state/multi_user.hpp"

namespace twk::test {

/// The multi-user window over "ann", "ben" and "cas" of the unit for new accounts, its users listed.
class MultiUserWindow : public ScreenTest {
 protected:
  MultiUserWindow() {
    for (const std::string name : {"ann", "ben", "cas"})
      add_user(lab, name, name);
  }

  /// Opens the window by its menu entry; `person` acts in it, then it is closed.
  void with_window(const std::function<void(QWidget&)>& person) {
    open();
    for (const char* const name : {"ann", "ben", "cas"})
      lab.session.multi_user.ListView2.add(lab.path_of(name), name, "USER");
    expect_window([&, person](QWidget& shown) {
      EXPECT_EQ(shown.objectName().toStdString(), "MultiUser");
      person(shown);
      click("Command7", &shown);
    });
    find<QAction>("mnuOption1")->trigger();
  }
  void show_tab(QWidget& shown, int tab) { find<QTabWidget>("SSTab1", &shown)->setCurrentIndex(tab); }
  void take_all(QWidget& shown) {
    screens::ListPane& users = pane("ListView2", &shown);
    users.setFocus();
    QTest::keySequence(&users, QKeySequence::SelectAll);
    click("Command1", &shown);
  }
  QString text(QWidget& shown, const char* label) {
    settle();
    return find<QLabel>(label, &shown)->text();
  }
  /// Starts a run over all users and presses its button again after the first of them.
  void cancel_a_run(QWidget& shown, const char* button_name) {
    auto* const button = find<QPushButton>(button_name, &shown);
    const QString caption = button->text();
    bool pressed = false;
    const auto watch = lab.session.multi_user.Label3.caption.watch([&] {
      if (std::exchange(pressed, true))
        return;
      EXPECT_EQ(button->text(), "&Cancel");
      // Esc must not close the window during a run.
      QTest::keyClick(&shown, Qt::Key_Escape);
      EXPECT_TRUE(shown.isVisible());
      QTimer::singleShot(0, button, [this, &shown, button_name] { click(button_name, &shown); });
    });
    click(button_name, &shown);
    EXPECT_EQ(button->text(), caption);
  }
};

}  // namespace twk::test
