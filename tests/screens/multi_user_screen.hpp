#pragma once

#include <set>

#include "platform/adsi.hpp"
#include "screens/screen_test.hpp"
#include "screens/widgets/list_pane.hpp"
#include "session/multi_user.hpp"

namespace twk::test {

using Names = std::set<std::string>;

/// The multi-user window over "ann", "ben" and "cas" of the unit for new accounts, its users listed.
class MultiUserWindow : public ScreenTest {
 protected:
  MultiUserWindow() {
    for (const std::string name : {"ann", "ben", "cas"}) {
      const platform::ObjectPtr user =
          lab.services.directory.GetObject("LDAP://twk.test/" + std::string(kNewStarters))
              ->Create("user", "CN=" + name);
      user->Put("samAccountName", name);
      user->SetInfo();
    }
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
  static screens::ListPane& list(QWidget& shown, const char* name) {
    auto* const pane = shown.findChild<screens::ListPane*>(name);
    if (pane == nullptr)
      throw std::logic_error(std::string("no list ") + name);
    return *pane;
  }
  void show_tab(QWidget& shown, int tab) { find<QTabWidget>("SSTab1", &shown)->setCurrentIndex(tab); }
  void take_all(QWidget& shown) {
    screens::ListPane& users = list(shown, "ListView2");
    users.setFocus();
    QTest::keySequence(&users, QKeySequence::SelectAll);
    click("Command1", &shown);
  }
  static Names shown_in(const screens::ListPane& pane) {
    Names names;
    for (int row = 0; row < pane.model()->rowCount(); ++row)
      names.insert(pane.model()->index(row, 0).data().toString().toStdString());
    return names;
  }
  Names disabled() {
    Names names;
    for (const char* const name : {"ann", "ben", "cas"}) {
      if (platform::User(lab.account(name)).AccountDisabled())
        names.insert(name);
    }
    return names;
  }
};

}  // namespace twk::test
