#include "windows/state/multi_user.hpp"
#include "screens/multi_user_screen.hpp"
#include "windows/multi_user/run_watch.hpp"
#include "windows/state/form1.hpp"
#include "windows/state/run_preview.hpp"

namespace twk::test {
namespace {

using testing::ElementsAre;
using testing::IsEmpty;

/// Acts once the preview has looked at every account, which it does while events come in.
void after_the_look(QWidget& preview, const std::function<void()>& act) {
  auto* const timer = new QTimer(&preview);
  auto* const effects = preview.findChild<QLabel*>("preview_effects");
  QObject::connect(timer, &QTimer::timeout, timer, [&preview, timer, effects, act, ticks = 0]() mutable {
    const bool looked = effects->text().startsWith("All accounts were looked at.");
    if (!looked && ++ticks < 1000)
      return;
    timer->stop();
    EXPECT_TRUE(looked) << effects->text().toStdString();
    looked ? act() : static_cast<void>(preview.close());
  });
  timer->start(5);
}

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

TEST_F(MultiUserWindow, ARunLeavesOutWhatTheFilterOfTheSelectionHides) {
  with_window([&](QWidget& shown) {
    take_all(shown);
    show_tab(shown, 2);
    click("LockAcc_1", &shown);
    type("ListView1_filter", "nobody", &shown);
    click("btnGo", &shown);
    EXPECT_TRUE(text(shown, "Label3").startsWith("Nothing was done: the filter hides"));
    type("ListView1_filter", "ben", &shown);
    settle();
    EXPECT_EQ(text(shown, "selected_count"), "3 selected, 2 hidden by the filter and left out of a run");
    expect_box("This will disable all selected accounts");
    click("btnGo", &shown);
    EXPECT_FALSE(platform::User(lab.account("ann")).AccountDisabled());
    EXPECT_TRUE(platform::User(lab.account("ben")).AccountDisabled());
    type("ListView1_filter", "", &shown);
    settle();
    EXPECT_EQ(text(shown, "selected_count"), "3 selected");
    type("ListView1_filter", "ben", &shown);
  });
  EXPECT_EQ(lab.session.multi_user.ListView1.hidden(), 0U) << "the filter ends with its window";
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

TEST_F(MultiUserWindow, WhoFailsIsListedAndTriedAgainAlone) {
  with_window([&](QWidget& shown) {
    take_all(shown);
    show_tab(shown, 0);
    click("Delete_NT_Account", &shown);
    expect_box("This Over rides the preferences setting.");
    click("No_Prompting", &shown);
    lab.directory.before = fail_at("Delete", 2, base::error::kPermissionDenied);
    EXPECT_FALSE(find<QWidget>("failures_box", &shown)->isVisible());
    click("Del_User", &shown);
    EXPECT_EQ(text(shown, "run_pace"), "3 done, 1 failed");
    EXPECT_EQ(shown_in("failures", &shown), std::vector<std::string>{"ben"});
    EXPECT_TRUE(find<QWidget>("failures_box", &shown)->isVisible());
    EXPECT_NE(lab.path_of("ben"), "");
    click("retry_failed", &shown);
    EXPECT_EQ(text(shown, "run_pace"), "1 done");
    EXPECT_EQ(lab.session.multi_user.ListView1.size(), 1U);
    EXPECT_FALSE(find<QWidget>("failures_box", &shown)->isVisible());
  });
  EXPECT_EQ(lab.path_of("ben"), "");
}

TEST(RunPace, TellsCountFailuresAndTheTimeLeft) {
  using std::chrono::seconds;
  EXPECT_EQ(windows::pace_text(2, 822, 0, seconds(10)), "2 of 822");
  EXPECT_EQ(windows::pace_text(12, 822, 1, seconds(12)), "12 of 822, 1 failed, about 14 minutes left");
  EXPECT_EQ(windows::pace_text(821, 822, 0, seconds(821)), "821 of 822, about 1 second left");
  EXPECT_EQ(windows::pace_text(822, 822, 0, seconds(9)), "822 of 822");
}

TEST_F(MultiUserWindow, APreviewNamesEveryAccountAndWhatWouldHappenAndDefaultsToCancel) {
  lab.session.run_preview.asks = true;
  std::filesystem::create_directories(lab.folder.path() / "servers/FS1/D/Users/ann");
  lab.account("ann")->Put("HomeDirectory", "\\\\FS1\\Users\\ann");
  with_window([&](QWidget& shown) {
    lab.session.multi_user.ListView1.add(std::string(kNewStarters), "New Starters", "OU");
    take_all(shown);
    click("Delete_NT_Account", &shown);
    for (const bool starts : {false, true}) {
      expect_window([&, starts](QWidget& preview) {
        EXPECT_EQ(preview.objectName(), "RunPreview");
        EXPECT_EQ(text(preview, "preview_question"), "Delete account.");
        EXPECT_EQ(text(preview, "preview_counts"),
                  "3 accounts, with those of 1 OU. Some are meant by several rows and are shown "
                  "once.");
        EXPECT_THAT(shown_in("preview_accounts", &preview), ElementsAre("ann", "ben", "cas"));
        after_the_look(preview, [&, starts] {
          EXPECT_TRUE(text(preview, "preview_effects").contains("Delete the account: 3"))
              << text(preview, "preview_effects").toStdString();
          if (!starts)
            return QTest::keyClick(&preview, Qt::Key_Return);
          for (int user = 0; user < 3; ++user)
            expect_box("Delete User", QMessageBox::Yes);
          click("preview_start", &preview);
        });
      });
      click("Del_User", &shown);
      EXPECT_EQ(lab.path_of("ann").empty(), starts);
    }
    click("Del_User", &shown);
    EXPECT_EQ(
        text(shown, "Label3"),
        "Nothing was done: the selection names no user. 3 users of an earlier run left out: ann, ben, cas");
  });
}

TEST_F(MultiUserWindow, AFunctionOverFourThousandAccountsShowsItsPreviewAtOnceAndCutsTheList) {
  lab.session.run_preview.asks = true;
  with_window([&](QWidget& shown) {
    const std::string path = lab.path_of("ben");
    for (int i = 0; i < 4000; ++i)
      lab.session.multi_user.ListView1.add(path + std::to_string(i), "u" + std::to_string(i), "USER");
    show_tab(shown, 2);
    click("LockAcc_1", &shown);
    expect_window([&](QWidget& preview) {
      EXPECT_TRUE(text(preview, "preview_question").startsWith("This will disable all selected accounts"));
      EXPECT_EQ(text(preview, "preview_counts"), "4000 accounts.");
      EXPECT_EQ(shown_in("preview_accounts", &preview).back(), "and 3500 more");
      QTest::keyClick(&preview, Qt::Key_Escape);
    });
    click("btnGo", &shown);
    EXPECT_FALSE(platform::User(lab.account("ben")).AccountDisabled());
  });
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

TEST_F(MultiUserWindow, GroupsTabChangesMembershipsAndUnitsAndARowTakesThemBack) {
  lab.group("Staff")->Add(lab.path_of("ann"));
  const auto is_member = [&](const char* name) { return lab.group("Staff")->IsMember(lab.path_of(name)); };
  with_window([&](QWidget& shown) {
    take_all(shown);
    show_tab(shown, windows::multi_tab::kGroups);
    click("change_groups", &shown);
    EXPECT_EQ(text(shown, "Label3"), "Choose a group first.");
    type("joined_group", "Nobody's", &shown);
    click("change_groups", &shown);
    EXPECT_EQ(text(shown, "Label3"), "The list of groups has none of the name \"Nobody's\".");
    type("joined_group", "Staff", &shown);
    click("change_groups", &shown);
    EXPECT_TRUE(is_member("ben") && is_member("cas"));
    expect_unit("Users");
    click("move_to_unit", &shown);
    EXPECT_EQ(lab.path_of("ben"), "LDAP://twk.test/CN=ben,CN=Users,DC=twk,DC=test");
  });
  window->tabs().setCurrentIndex(windows::tab::kLog);
  click_row("ListView1", "Groups changed: 2 users");
  expect_box("Take back 2 changes of this run?", QMessageBox::Yes);
  click("Undo_Run");
  EXPECT_EQ(is_member("ben"), false);
  EXPECT_TRUE(is_member("ann")) << "she was in before";
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
    EXPECT_TRUE(lab.session.multi_user.ListView1.empty());
  }
}

TEST_F(MultiUserWindow, ThePopupLaysTheSelectionAsideForItsOwnUser) {
  with_window([&](QWidget& shown) { take_all(shown); });
  lab.session.form1.TreeView1.select(lab.session.form1.TreeView1.find(lab.path_of("ben")));
  expect_window([&](QWidget& shown) {
    EXPECT_THAT(shown_in("ListView1", &shown), ElementsAre("ben"));
    click("Delete_NT_Account", &shown);
    expect_box("Delete User", QMessageBox::Yes);
    click("Del_User", &shown);
    QTest::keyClick(&shown, Qt::Key_Escape);
  });
  find<QAction>("mnupopup4")->trigger();
  EXPECT_EQ(lab.path_of("ben"), "");
  const controls::ListView& selection = lab.session.multi_user.ListView1;
  ASSERT_EQ(selection.size(), 2U) << "who is gone does not come back";
  EXPECT_EQ(selection.at(0).text + selection.at(1).text, "anncas");
  EXPECT_EQ(lab.session.multi_user.ListView2.find_key(lab.path_of("ann")), nullptr);
}

}  // namespace
}  // namespace twk::test
