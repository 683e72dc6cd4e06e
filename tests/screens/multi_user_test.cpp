#include "session/multi_user.hpp"
#include "screens/multi_user_screen.hpp"
#include "session/form1.hpp"

namespace twk::test {
namespace {

TEST_F(MultiUserWindow, RowsMoveByButtonDoubleClickAndKey) {
  with_window([&](QWidget& shown) {
    screens::ListPane& users = list(shown, "ListView2");
    screens::ListPane& selection = list(shown, "ListView1");
    QTest::mouseDClick(users.viewport(), Qt::LeftButton, {},
                       users.visualRect(users.model()->index(0, 0)).center());
    EXPECT_EQ(shown_in(selection), Names{"ann"});
    take_all(shown);
    EXPECT_EQ(shown_in(selection), (Names{"ann", "ben", "cas"}));
    EXPECT_EQ(shown_in(users), Names());
    selection.setFocus();
    selection.setCurrentIndex(selection.model()->index(1, 0));
    QTest::keyClick(&selection, Qt::Key_Delete);
    EXPECT_EQ(shown_in(users), Names{"ben"});
    selection.selectAll();
    click("Command2", &shown);
    EXPECT_EQ(shown_in(users), (Names{"ann", "ben", "cas"}));
    EXPECT_EQ(shown_in(selection), Names());
  });
}

TEST_F(MultiUserWindow, WhatIsTypedFiltersAndOnlyWhatIsShownIsTaken) {
  with_window([&](QWidget& shown) {
    type("ListView2_filter", "B", &shown);
    EXPECT_EQ(shown_in(list(shown, "ListView2")), Names{"ben"});
    take_all(shown);
    EXPECT_EQ(shown_in(list(shown, "ListView1")), Names{"ben"});
    type("ListView2_filter", "", &shown);
    EXPECT_EQ(shown_in(list(shown, "ListView2")), (Names{"ann", "cas"}));
  });
}

TEST_F(MultiUserWindow, ASelectedRowThatTheFilterHidesIsNotTaken) {
  with_window([&](QWidget& shown) {
    screens::ListPane& users = list(shown, "ListView2");
    users.setFocus();
    users.setCurrentIndex(users.model()->index(0, 0));
    type("ListView2_filter", "cas", &shown);
    click("Command1", &shown);
    EXPECT_EQ(shown_in(list(shown, "ListView1")), Names());
  });
}

TEST_F(MultiUserWindow, AccountsTabDisablesTheSelection) {
  with_window([&](QWidget& shown) {
    take_all(shown);
    show_tab(shown, 2);
    click("LockAcc_1", &shown);
    expect_box("This will disable all selected accounts\nPress 'OK' to continue");
    click("btnGo", &shown);
    EXPECT_EQ(find<QLabel>("Label3", &shown)->text().toStdString(), " Completed");
    EXPECT_FALSE(find<QWidget>("ProgressBar1", &shown)->isVisible());
  });
  EXPECT_EQ(disabled(), (Names{"ann", "ben", "cas"}));
}

TEST_F(MultiUserWindow, GoTurnsIntoCancelAndAPressOfItStops) {
  with_window([&](QWidget& shown) {
    take_all(shown);
    show_tab(shown, 2);
    click("LockAcc_1", &shown);
    auto* const go = find<QPushButton>("btnGo", &shown);
    bool pressed = false;
    const auto watch = lab.session.multi_user.Label3.caption.watch([&] {
      if (std::exchange(pressed, true))
        return;
      EXPECT_EQ(go->text().toStdString(), "&Cancel");
      // Esc must not close the window during a run.
      QTest::keyClick(&shown, Qt::Key_Escape);
      EXPECT_TRUE(shown.isVisible());
      QTimer::singleShot(0, go, [this, &shown] { click("btnGo", &shown); });
    });
    expect_box("disable all selected accounts");
    click("btnGo", &shown);
    EXPECT_EQ(go->text().toStdString(), "&Go");
    EXPECT_EQ(find<QLabel>("Label3", &shown)->text().toStdString(), "Canceled by user.");
  });
  EXPECT_EQ(disabled().size(), 1U);
}

TEST_F(MultiUserWindow, ExpiredAccountsComeToTheSelection) {
  platform::User ben(lab.account("ben"));
  ben.put_AccountExpirationDate(*base::parse_date("1/2/2020"));
  ben.SetInfo();
  with_window([&](QWidget& shown) {
    show_tab(shown, 2);
    click("LockAcc_5", &shown);
    type("Expiredate", "2/2/20", &shown);
    click("btnGo", &shown);
    EXPECT_EQ(shown_in(list(shown, "ListView1")), Names{"ben"});
    EXPECT_EQ(shown_in(list(shown, "ListView2")), (Names{"ann", "cas"}));
    EXPECT_EQ(find<QLabel>("Label3", &shown)->text().toStdString(), "Total Expired Accounts: 1");
  });
}

TEST_F(MultiUserWindow, DeleteTabDeletesAndShowsWhoIsGone) {
  with_window([&](QWidget& shown) {
    take_all(shown);
    show_tab(shown, 0);
    auto* const ownership = find<QCheckBox>("Del_Permissions", &shown);
    EXPECT_FALSE(ownership->isEnabled());
    click("Delete_Data", &shown);
    EXPECT_TRUE(ownership->isEnabled());
    EXPECT_TRUE(find<QCheckBox>("Del_Shares", &shown)->isChecked());
    EXPECT_FALSE(find<QCheckBox>("Del_Shares", &shown)->isEnabled());
    click("Delete_Data", &shown);
    click("Del_Shares", &shown);
    click("Delete_NT_Account", &shown);
    expect_box("This Over rides the preferences setting.");
    click("No_Prompting", &shown);
    click("Del_User", &shown);
    EXPECT_EQ(find<QLabel>("Label3", &shown)->text().toStdString(), "Delete Completed, Check log for errors");
    const screens::ListPane& selection = list(shown, "ListView1");
    EXPECT_EQ(selection.model()->index(0, 0).data(Qt::ForegroundRole).value<QBrush>().color(),
              QGuiApplication::palette().color(QPalette::Disabled, QPalette::Text));
    take_all(shown);
  });
  EXPECT_EQ(lab.path_of("ann"), "");
}

TEST_F(MultiUserWindow, MoveTabNeedsSiteAndTemplateAndMoves) {
  for (const std::string name : {"Users", "Profiles"}) {
    std::filesystem::create_directories(lab.folder.path() / "servers/FS1/D" / name);
    platform::ShareInfo502 share;
    share.shi502_netname = name;
    share.shi502_path = "D:\\" + name;
    lab.services.network.NetShareAdd("FS1", share);
  }
  with_window([&](QWidget& shown) {
    take_all(shown);
    show_tab(shown, 1);
    expect_box("A Site and Template must be selected before moving users");
    click("btn_MoveUser", &shown);
    choose("Multi_Site", "Head Office", &shown);
    choose("Multi_Template", "Staff", &shown);
    click("UserData_2", &shown);
    click("btn_MoveUser", &shown);
    EXPECT_EQ(find<QLabel>("Label3", &shown)->text().toStdString(), "Move Complete, Check Log for Errors");
  });
  EXPECT_EQ(lab.property("cas", "HomeDirectory"), "\\\\FS1\\Users\\cas");
}

TEST_F(MultiUserWindow, ThePopupOpensItWithTheUserAtTheRightTab) {
  open();
  controls::TreeView& tree = lab.session.form1.TreeView1;
  tree.select(tree.find(lab.path_of("ben")));
  for (const auto& [entry, tab] : {std::pair{"mnupopup4", 0}, {"mnupopup5", 1}, {"deleteuser", 0}}) {
    expect_window([&, tab = tab](QWidget& shown) {
      EXPECT_EQ(find<QTabWidget>("SSTab1", &shown)->currentIndex(), tab);
      EXPECT_EQ(shown_in(list(shown, "ListView1")), Names{"ben"});
      QTest::keyClick(&shown, Qt::Key_Escape);
    });
    find<QAction>(entry)->trigger();
  }
}

}  // namespace
}  // namespace twk::test
