#include "screens/screen_test.hpp"
#include "session/settings.hpp"
#include "windows/foresight.hpp"
#include "windows/state/form1.hpp"

namespace twk::test {
namespace {

class NewUserTabTest : public ScreenTest {
 protected:
  void open_with_jo() {
    open();
    type("strFirst", "jo");
    type("StrMiddle", "k");
    type("strLast", "doe");
  }
  QString light(const std::string& stage) {
    settle();
    QString shown;
    for (const QLabel* const label : find<QWidget>((stage + "_light").c_str())->findChildren<QLabel*>())
      shown += label->text();
    return shown;
  }
};

TEST_F(NewUserTabTest, EnterInAFieldMakesTheAccountOfTheTypedNames) {
  open_with_jo();
  EXPECT_EQ(window->tabs().currentIndex(), windows::tab::kNewUser);
  type("Description", "Clerk");
  press("Description", Qt::Key_Return);
  EXPECT_EQ(status(), "User Created.");
  EXPECT_EQ(lab.property("Jo.Doe", "Description"), "Clerk");
  EXPECT_EQ(lab.property("Jo.Doe", "displayName"), "Jo K Doe");
  settle();
  EXPECT_EQ(find<QLabel>("progress")->text(), "Finished");
  EXPECT_EQ(find<QProgressBar>("ProgressBar1")->value(), 100);
  EXPECT_EQ(find<QLineEdit>("UserID_Box")->text(), "");
  EXPECT_EQ(find<QLineEdit>("strFirst")->text(), "Jo") << "the next person may share the names";
  EXPECT_TRUE(window->isEnabled());
}

TEST_F(NewUserTabTest, TheButtonMakesItUnderTheTypedNameWhenSiteTemplateAndUserAreChosen) {
  open_with_jo();
  type("UserID_Box", "jdoe");
  lab.session.form1.nutemplate.text = std::string();
  lab.session.form1.NUsitename.text = std::string();
  choose("nutemplate", "Staff");
  expect_box("You must select a Template,Site & OU in the treeview");
  click("CreateUser");
  choose("NUsitename", "Head Office");
  press("Copy_User", Qt::Key_Space);
  expect_box("You must select a User in the treeview to create this user");
  click("CreateUser");
  press("Copy_User", Qt::Key_Space);
  click("CreateUser");
  EXPECT_EQ(status(), "User Created.");
  EXPECT_EQ(lab.account("jdoe")->Class(), "user");
  EXPECT_EQ(lab.path_of("Jo.Doe"), "");
}

TEST_F(NewUserTabTest, AFailureShowsARedLightAndAnUsableWindow) {
  open_with_jo();
  lab.directory.before = fail_at("SetInfo", 1, base::error::kPermissionDenied);
  expect_box("error: 70");
  click("CreateUser");
  EXPECT_EQ(status(), "Error Creating Users Account...");
  EXPECT_EQ(light("Create_User_Account"), "Error");
  EXPECT_EQ(find<QLineEdit>("UserID_Box")->text(), "Jo.Doe") << "it can be tried again";
  EXPECT_TRUE(window->isEnabled());
}

TEST_F(NewUserTabTest, ASecondPressWithTheSameNamesAsksAndNoUserIdReachesTheNextPerson) {
  open_with_jo();
  lab.session.form1.ALTID.text = std::string("%last%.%first%");
  click("CreateUser");
  expect_box("\"Jo.Doe\" was just made with these names.", QMessageBox::No);
  click("CreateUser");
  EXPECT_EQ(lab.path_of("Doe.Jo"), "");
  expect_box("Make another account with the same names?", QMessageBox::Yes);
  press("strLast", Qt::Key_Return);
  EXPECT_NE(lab.path_of("Doe.Jo"), "");
  type("strLast", "Roe");
  lab.directory.before = fail_at("SetInfo", 1, base::error::kPermissionDenied);
  expect_box("error: 70");
  click("CreateUser");
  ASSERT_EQ(find<QLineEdit>("UserID_Box")->text(), "Jo.Roe");
  type("strFirst", "Frank");
  EXPECT_EQ(find<QLineEdit>("UserID_Box")->text(), "") << "it was formed from other names";
  type("UserID_Box", "frank7");
  type("strLast", "Miller");
  EXPECT_EQ(find<QLineEdit>("UserID_Box")->text(), "frank7") << "it was typed";
  find<QAction>("NewUser")->trigger();
  EXPECT_EQ(find<QLineEdit>("UserID_Box")->text(), "");
}

TEST_F(NewUserTabTest, ACardSaysWhatWasMadeAndLeadsToTheAccountOrToTheNextPerson) {
  open_with_jo();
  EXPECT_FALSE(find<QWidget>("new_user_card")->isVisible());
  click("CreateUser");
  EXPECT_EQ(find<QLabel>("new_user_result")->text().section('\n', 0, 0).toStdString(),
            "Jo.Doe was created: CN=Jo.Doe," + std::string(kNewStarters));
  click("Copy_Made");
  EXPECT_EQ(QGuiApplication::clipboard()->text(), find<QLabel>("new_user_result")->text());
  click("Show_Made");
  EXPECT_EQ(find<QLabel>("USERID")->text(), "Jo.Doe");
  window->tabs().setCurrentIndex(windows::tab::kNewUser);
  click("Another_User");
  EXPECT_FALSE(find<QWidget>("new_user_card")->isVisible());
  EXPECT_EQ(find<QLineEdit>("strFirst")->text(), "");
}

TEST_F(NewUserTabTest, BesideTheFieldsStandsWhatWouldBeMadeAndWhyNot) {
  open();
  const auto shows = [this](const char* name, const QString& text) {
    const bool there = QTest::qWaitFor([&] { return find<QLabel>(name)->text() == text; }, 3000);
    EXPECT_TRUE(there) << name << ": " << find<QLabel>(name)->text().toStdString();
  };
  shows("foreseen_verdict", "Type the names: what would be made is shown here.");
  shows("foreseen_place", "New Starters");
  type("strFirst", "jo");
  type("StrMiddle", "k");
  type("strLast", "doe");
  shows("foreseen_account", "Jo.Doe");
  shows("foreseen_full_name", "Jo K Doe");
  shows("foreseen_verdict", "Can be created.");
  EXPECT_EQ(lab.path_of("Jo.Doe"), "");
  click("CreateUser");
  EXPECT_EQ(status(), "User Created.");
  shows("foreseen_verdict", "Cannot be created: User Jo.Doe Already Exist");
  type("UserID_Box", "jo7");
  shows("foreseen_account", "jo7");
  type("UserID_Box", "a-name-of-more-than-20-letters");
  shows("foreseen_verdict", "Cannot be created: UserID Is too long or too Short, 1-20 chrs");
  lab.session.form1.TreeView1.select(lab.session.form1.TreeView1.first());
  shows("foreseen_verdict",
        "Cannot be created: You must select a Template,Site & OU in the treeview to create this user");
}

// However often one person's names are changed: names of the whole domain are read at once for many lines
// only.
TEST_F(NewUserTabTest, WhatOthersMakeMeanwhileIsForeseen) {
  open_with_jo();
  for (int i = 0; i < 30; ++i)
    windows::foresee_new_user(lab.session);
  EXPECT_EQ(find<QLabel>("foreseen_verdict")->text(), "Can be created.");
  const auto unit = lab.session.platform.directory.GetObject("LDAP://twk.test/CN=Users,DC=twk,DC=test");
  const auto other = unit->Create("user", "CN=Another");
  other->Put("sAMAccountName", std::string("Jo.Doe"));
  other->SetInfo();
  windows::foresee_new_user(lab.session);
  EXPECT_THAT(find<QLabel>("foreseen_verdict")->text().toStdString(),
              testing::StartsWith("Cannot be created: The account name Jo.Doe is in use"));
}

TEST_F(NewUserTabTest, TheWindowFitsAFullHdScreenAtTwiceTheScale) {
  open();
  const QSize room(960, 500);
  EXPECT_EQ(window->minimumSizeHint().expandedTo(room), room)
      << window->minimumSizeHint().width() << "x" << window->minimumSizeHint().height();
  window->resize(1024, 700);
  settle();
  const auto* const create = find<QPushButton>("CreateUser");
  EXPECT_TRUE(window->rect().contains(create->mapTo(window.get(), create->rect().bottomRight())));
  window->resize(1000, 700);
  for (QTabWidget* const tabs : {&window->tabs(), &window->setup_tabs()}) {
    for (int tab = 0; tab < tabs->count(); ++tab) {
      tabs->setCurrentIndex(tab);
      settle();
      for (const QScrollArea* const area : window->findChildren<QScrollArea*>())
        EXPECT_TRUE(!area->isVisible() || area->horizontalScrollBar()->maximum() == 0)
            << tabs->tabText(tab).toStdString() << " is too wide by "
            << area->horizontalScrollBar()->maximum();
    }
  }
}

TEST_F(NewUserTabTest, EachStageHasItsSettingAndItsLight) {
  open();
  windows::Form1& form = lab.session.form1;
  const struct {
    const char* box;
    const char* setting;
    controls::Label& light;
  } stages[] = {{"Create_User_Account", "UserAccount", form.UserAccount},
                {"Create_Dirs", "CreateDirs", form.Createdirs},
                {"Create_Shares", "CreateShares", form.Sharedirs},
                {"Dir_Security", "SetPermissions", form.Security},
                {"Create_Mail_Account", "MailAccount", form.MailAccount},
                {"Run_script", "RunCmd", form.run}};
  for (const auto& stage : stages) {
    press(stage.box, Qt::Key_Space);
    EXPECT_EQ(session::read_setting(lab.session, session::kUM, stage.setting),
              find<QCheckBox>(stage.box)->isChecked() ? "Yes" : "No");
    stage.light.caption = std::string("Completed");
    EXPECT_EQ(light(stage.box), "Completed") << stage.box;
    stage.light.caption = std::string();
    EXPECT_EQ(light(stage.box), "") << stage.box;
  }
}

}  // namespace
}  // namespace twk::test
