#include "screens/screen_test.hpp"
#include "session/form1.hpp"
#include "session/settings.hpp"
#include "stores/side_tables.hpp"

namespace twk::test {
namespace {

/// The New User tab on a domain of each kind.
class NewUserTabTest : public ScreenTest, public testing::WithParamInterface<lab::DomainKind> {
 protected:
  NewUserTabTest() : ScreenTest(GetParam()) {}

  void type_jo() {
    type("strFirst", "jo");
    type("StrMiddle", "k");
    type("strLast", "doe");
  }
  QString light(const char* stage) {
    QString shown;
    for (const QLabel* const label :
         find<QWidget>((std::string(stage) + "_light").c_str())->findChildren<QLabel*>())
      shown += label->text();
    return shown;
  }
  void expect_green(const std::string& row) {
    ASSERT_FALSE(lab.log_tab().empty());
    EXPECT_THAT(lab.log_tab(), testing::Contains("GREEN " + row));
  }
  void expect_no_account(std::string_view name) {
    base::Trap trap;
    trap([&] { EXPECT_EQ(lab.account(name), nullptr); });
    EXPECT_NE(trap.number(), 0) << name << " is there";
  }
};
INSTANTIATE_TEST_SUITE_P(Kinds, NewUserTabTest,
                         testing::Values(lab::DomainKind::kNative, lab::DomainKind::kMixed,
                                         lab::DomainKind::kNt),
                         kind_name);

TEST_P(NewUserTabTest, EnterInAFieldMakesTheAccountOfTheTypedNames) {
  open();
  EXPECT_EQ(window->tabs().currentIndex(), session::tab::kNewUser);
  type_jo();
  type("Description", "Clerk");
  QTest::keyClick(find<QLineEdit>("Description"), Qt::Key_Return);
  EXPECT_EQ(status(), "User Created.");
  EXPECT_EQ(lab.property("Jo.Doe", "Description"), "Clerk");
  EXPECT_THAT(lab.groups_of("Jo.Doe"), testing::Contains(lab.is_nt() ? "Staff" : "CN=Staff"));
  expect_green("Jo.Doe Created User ");
  EXPECT_EQ(light("Create_User_Account"), "Completed");
  EXPECT_EQ(find<QLabel>("progress")->text(), "Finished");
  EXPECT_EQ(find<QProgressBar>("ProgressBar1")->value(), 100);
  EXPECT_EQ(find<QLineEdit>("UserID_Box")->text(), "");
  EXPECT_EQ(find<QLineEdit>("strFirst")->text(), "Jo") << "the next person may share the names";
  EXPECT_TRUE(window->isEnabled());
}

TEST_P(NewUserTabTest, TheButtonMakesTheAccountUnderTheTypedName) {
  open();
  type_jo();
  type("UserID_Box", "jdoe");
  click("CreateUser");
  EXPECT_EQ(status(), "User Created.");
  EXPECT_EQ(lab.account("jdoe")->Class(), lab.is_nt() ? "User" : "user");
  expect_no_account("Jo.Doe");
}

TEST_P(NewUserTabTest, ATakenNameIsReportedAndTheFieldsStay) {
  open();
  type_jo();
  click("CreateUser");
  ASSERT_EQ(status(), "User Created.");
  expect_box("User Jo.Doe Already Exist");
  click("CreateUser");
  EXPECT_EQ(status(), "Ready.");
  EXPECT_EQ(find<QLineEdit>("UserID_Box")->text(), "Jo.Doe");
  type("UserID_Box", "Jo.Doe2");
  QTest::keyClick(find<QLineEdit>("UserID_Box"), Qt::Key_Return);
  EXPECT_EQ(status(), "User Created.");
  expect_green("Jo.Doe2 Created User ");
}

TEST_P(NewUserTabTest, ATakenNameLeadsToTheAlternativeFormat) {
  lab.set("Setup", "AltSetupID", "%last%.%first%");
  open();
  for (const char* const name : {"Jo.Doe", "Doe.Jo"}) {
    type_jo();
    click("CreateUser");
    EXPECT_EQ(status(), "User Created.");
    expect_green(std::string(name) + " Created User ");
    EXPECT_NE(lab.account(name), nullptr);
  }
}

TEST_P(NewUserTabTest, RefusesWithoutTemplateOrSite) {
  const QString box =
      lab.is_nt() ? "Must Select a Template & Site." : "You must select a Template,Site & OU in the treeview";
  open();
  type_jo();
  lab.session.form1.nutemplate.text = std::string();
  expect_box(box);
  click("CreateUser");
  choose("nutemplate", "Staff");
  lab.session.form1.NUsitename.text = std::string();
  expect_box(box);
  QTest::keyClick(find<QLineEdit>("strLast"), Qt::Key_Return);
  expect_no_account("Jo.Doe");
  EXPECT_TRUE(lab.log_tab().empty());
}

TEST_P(NewUserTabTest, ActiveDirectoryRequiresAnOuAndACopyRequiresAUser) {
  open();
  type_jo();
  lab.session.form1.TreeView1.select(lab.session.form1.TreeView1.first());
  if (!lab.is_nt()) {
    expect_box("You must select a Template,Site & OU in the treeview");
    click("CreateUser");
    lab.select(kNewStarters);
  }
  QTest::keyClick(find<QCheckBox>("Copy_User"), Qt::Key_Space);
  expect_box("You must select a User in the treeview to create this user");
  click("CreateUser");
  expect_no_account("Jo.Doe");
}

TEST_P(NewUserTabTest, NamesThatCannotBeAreRefusedWithoutAnAccount) {
  open();
  type_jo();
  for (const auto& [name, told] :
       {std::pair("a*b?c", "User Name Invalid..."),
        std::pair("abcdefghijklmnopqrstu", "UserID Is too long or too Short, 1-20 chrs")}) {
    type("UserID_Box", name);
    QTest::keyClick(find<QLineEdit>("UserID_Box"), Qt::Key_Return);
    EXPECT_EQ(status(), told);
  }
  EXPECT_EQ(find<QProgressBar>("ProgressBar1")->value(), 0);
  EXPECT_TRUE(lab.log_tab().empty());
}

TEST_P(NewUserTabTest, AFailureShowsARedLightAndAnUsableWindow) {
  open();
  type_jo();
  lab.directory.before = fail_at("SetInfo", 1, base::error::kPermissionDenied);
  if (!lab.is_nt())
    expect_box("error: 70");
  click("CreateUser");
  EXPECT_EQ(status(), "Error Creating Users Account...");
  EXPECT_EQ(light("Create_User_Account"), "Error");
  EXPECT_TRUE(window->isEnabled());
  expect_no_account("Jo.Doe");
}

TEST_P(NewUserTabTest, AStageThatIsTickedOffIsStoredAndLeavesItsLightBlank) {
  open();
  QTest::keyClick(find<QCheckBox>("Create_User_Account"), Qt::Key_Space);
  EXPECT_EQ(session::read_setting(lab.session, session::kUM, "UserAccount"), "No");
  type_jo();
  click("CreateUser");
  EXPECT_EQ(status(), "User Created.");
  EXPECT_EQ(light("Create_User_Account"), "");
  expect_no_account("Jo.Doe");
}

TEST_P(NewUserTabTest, SharesAndPermissionsRunWhenTheirBoxesAreTicked) {
  lab.staff.HomeShare = "%UserName%$";
  open();
  stores::write_permissions(lab.session, "SharePerm.dat", {});
  for (const char* const stage : {"Create_Shares", "Dir_Security"})
    click(stage);
  type_jo();
  click("CreateUser");
  EXPECT_EQ(status(), "User Created.");
  EXPECT_EQ(light("Create_Shares"), "Completed");
  EXPECT_EQ(light("Dir_Security"), "Error") << "there is no table of permissions";
  EXPECT_THAT(lab.log_tab(), testing::Contains(testing::StartsWith(
                                 "YELLOW Jo.Doe Created User - Security Failed for D:\\Users\\Jo.Doe")));
  EXPECT_EQ(lab.services.network.NetShareGetInfo("FS1", "Jo.Doe$").shi502_path, "D:\\Users\\Jo.Doe");

  stores::write_permissions(lab.session, "Permissions.dat",
                            std::vector<records::PermissionRecord>{{false, "%UserName%", "Change", ""}});
  type("strFirst", "Ann");
  click("CreateUser");
  EXPECT_EQ(light("Dir_Security"), "Completed");
  expect_green("Ann.Doe Created User ");
}

}  // namespace
}  // namespace twk::test
