#include "windows/state/multi_user.hpp"
#include "screens/multi_user_screen.hpp"
#include "windows/state/form1.hpp"

namespace twk::test {
namespace {

using testing::ElementsAre;
using testing::IsEmpty;

TEST_F(MultiUserWindow, RowsMoveByButtonDoubleClickAndKey) {
  with_window([&](QWidget& shown) {
    double_click_row("ListView2", "ann", &shown);
    EXPECT_THAT(shown_in("ListView1", &shown), ElementsAre("ann"));
    take_all(shown);
    EXPECT_THAT(shown_in("ListView2", &shown), IsEmpty());
    click_row("ListView1", "ben", &shown);
    press("ListView1", Qt::Key_Delete, &shown);
    EXPECT_THAT(shown_in("ListView2", &shown), ElementsAre("ben"));
    pane("ListView1", &shown).selectAll();
    click("Command2", &shown);
    EXPECT_THAT(shown_in("ListView2", &shown), ElementsAre("ann", "ben", "cas"));
    EXPECT_THAT(shown_in("ListView1", &shown), IsEmpty());
  });
}

TEST_F(MultiUserWindow, OnlyWhatTheFilterShowsIsTaken) {
  with_window([&](QWidget& shown) {
    click_row("ListView2", "ann", &shown);
    type("ListView2_filter", "B", &shown);
    click("Command1", &shown);
    EXPECT_THAT(shown_in("ListView1", &shown), IsEmpty());
    take_all(shown);
    EXPECT_THAT(shown_in("ListView1", &shown), ElementsAre("ben"));
    type("ListView2_filter", "", &shown);
    EXPECT_THAT(shown_in("ListView2", &shown), ElementsAre("ann", "cas"));
  });
}

TEST_F(MultiUserWindow, GoTurnsIntoCancelAndAPressOfItStops) {
  with_window([&](QWidget& shown) {
    take_all(shown);
    show_tab(shown, 2);
    click("LockAcc_1", &shown);
    expect_box("This will disable all selected accounts\nPress 'OK' to continue");
    cancel_a_run(shown, "btnGo");
    EXPECT_EQ(text(shown, "Label3"), "Canceled by user.");
    EXPECT_FALSE(find<QWidget>("ProgressBar1", &shown)->isVisible());
  });
  EXPECT_TRUE(platform::User(lab.account("ann")).AccountDisabled());
  EXPECT_FALSE(platform::User(lab.account("ben")).AccountDisabled());
}

TEST_F(MultiUserWindow, ItsFieldsWriteTheirControls) {
  windows::MultiUser& window_state = lab.session.multi_user;
  with_window([&](QWidget& shown) {
    const struct {
      int tab;
      const char* name;
      controls::CheckBox& control;
    } boxes[] = {{0, "Delete_NT_Account", window_state.Delete_NT_Account},
                 {0, "Delete_Mail", window_state.Delete_Mail},
                 {0, "Run_command", window_state.Run_command},
                 {0, "Del_Shares", window_state.Del_Shares},
                 {0, "Delete_Data", window_state.Delete_Data},
                 {0, "Del_Permissions", window_state.Del_Permissions},
                 {1, "Add_to_Groups", window_state.Add_to_Groups},
                 {1, "Change_Logon", window_state.Change_Logon},
                 {1, "Run_CMD", window_state.Run_CMD},
                 {2, "ctrChangePswd", window_state.ctrChangePswd},
                 {2, "Unlock_Reset", window_state.Unlock_Reset}};
    EXPECT_FALSE(find<QWidget>("Del_Permissions", &shown)->isEnabled()) << "of the directories that go";
    for (const auto& box : boxes) {
      show_tab(shown, box.tab);
      const bool before = box.control.on();
      press(box.name, Qt::Key_Space, &shown);
      EXPECT_NE(box.control.on(), before) << box.name;
    }
    EXPECT_FALSE(find<QWidget>("Del_Shares", &shown)->isEnabled()) << "of directories that go, shares go too";
    for (int function = 0; function < 7; ++function) {
      click(("LockAcc_" + std::to_string(function)).c_str(), &shown);
      EXPECT_EQ(window_state.LockAcc.index.get(), function);
    }
    type("Expiredate", "2/2/20", &shown);
    EXPECT_EQ(window_state.Expiredate.text.get(), "2/2/20");
  });
}

TEST_F(MultiUserWindow, DeleteTabDeletesAndShowsWhoIsGone) {
  with_window([&](QWidget& shown) {
    take_all(shown);
    show_tab(shown, 0);
    click("Delete_NT_Account", &shown);
    expect_box("This Over rides the preferences setting.");
    click("No_Prompting", &shown);
    click("Del_User", &shown);
    EXPECT_EQ(text(shown, "Label3"), "Delete Completed, Check log for errors");
    const QModelIndex ghost = pane("ListView1", &shown).model()->index(0, 0);
    EXPECT_EQ(ghost.data(Qt::ForegroundRole).value<QBrush>().color(),
              QGuiApplication::palette().color(QPalette::Disabled, QPalette::Text));
  });
  EXPECT_EQ(lab.path_of("ann"), "");
}

TEST_F(MultiUserWindow, MoveTabAsksForSiteAndTemplateAndMoves) {
  std::filesystem::create_directories(lab.folder.path() / "servers/FS1/D/Users");
  platform::ShareInfo502 share;
  share.shi502_netname = "Users";
  share.shi502_path = "D:\\Users";
  lab.services.network.NetShareAdd("FS1", share);
  lab.staff.ProfilePath = lab.staff.ProfileDirPath = "";
  with_window([&](QWidget& shown) {
    take_all(shown);
    show_tab(shown, 1);
    expect_box("A Site and Template must be selected before moving users");
    click("btn_MoveUser", &shown);
    choose("Multi_Site", "Head Office", &shown);
    choose("Multi_Template", "Staff", &shown);
    click("UserData_2", &shown);
    expect_box("This Over rides the preferences setting.");
    click("No_Prompt", &shown);
    click("btn_MoveUser", &shown);
    EXPECT_EQ(text(shown, "Label3"), "Move Complete, Check Log for Errors");
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
      EXPECT_THAT(shown_in("ListView1", &shown), ElementsAre("ben"));
      QTest::keyClick(&shown, Qt::Key_Escape);
    });
    find<QAction>(entry)->trigger();
  }
}

}  // namespace
}  // namespace twk::test
