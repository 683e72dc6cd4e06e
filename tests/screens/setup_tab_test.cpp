#include "screens/screen_test.hpp"
#include "session/form1.hpp"
#include "session/settings.hpp"
#include "windows/start_up.hpp"

namespace twk::test {
namespace {

class SetupTabTest : public ScreenTest {
 protected:
  void open_tab(int setup_tab) {
    open();
    window->tabs().setCurrentIndex(session::tab::kSetup);
    window->setup_tabs().setCurrentIndex(setup_tab);
  }
  std::string setting(std::string_view sub_key, std::string_view name) {
    return session::read_setting(lab.session, sub_key, name);
  }
  /// Only the words of an option accept a click, and they need not reach its middle.
  void pick(const char* name) {
    auto* const option = find<QRadioButton>(name);
    QTest::mouseClick(option, Qt::LeftButton, {}, QPoint(8, option->height() / 2));
  }
  void tick(const char* name) { QTest::keyClick(find<QCheckBox>(name), Qt::Key_Space); }
};

TEST_F(SetupTabTest, AFirstRunBeginsOnTheSetUpTab) {
  lab.set("Setup", "Domain", "");
  ASSERT_EQ(windows::start_session(lab.session), windows::StartUp::kReady);
  window = std::make_unique<screens::MainWindow>(lab.session);
  window->show();
  EXPECT_EQ(window->tabs().currentIndex(), session::tab::kSetup);
  EXPECT_EQ(status(), "Must Enter Setup Details...");
  EXPECT_TRUE(find<QLabel>("first_run")->isVisible());
  auto* const domain = find<QComboBox>("DomName");
  domain->setFocus();
  domain->lineEdit()->selectAll();
  QTest::keyClicks(domain->lineEdit(), "twk.test");
  click("Command3");
  EXPECT_EQ(setting("Setup", "Domain"), "twk.test");
}

TEST_F(SetupTabTest, AnyOtherRunBeginsWithNewUsersAndWithoutTheHint) {
  open();
  EXPECT_EQ(window->tabs().currentIndex(), session::tab::kNewUser);
  window->tabs().setCurrentIndex(session::tab::kSetup);
  EXPECT_FALSE(find<QLabel>("first_run")->isVisible());
}

TEST_F(SetupTabTest, WhatKeepsNoPasswordInTheSettingsIsOfferedFirst) {
  open_tab(session::setup_tab::kSetup);
  EXPECT_LT(find<QLineEdit>("Formatted_Password")->y(), find<QLineEdit>("defaultpassword")->y());
  EXPECT_TRUE(find<QLabel>("password_note")->isVisible());
  EXPECT_THAT(find<QLabel>("password_note")->text().toStdString(), testing::HasSubstr("readable text"));
}

TEST_F(SetupTabTest, SaveStoresEveryField) {
  open_tab(session::setup_tab::kSetup);
  tick("FmtPass");
  type("dbpath", "  C:\\data ");
  type("defaultpassword", "Secret-1");
  type("Formatted_Password", "%first%-1");
  type("setupid", "1%first%%last%");
  type("ALTID", "%last%");
  type("Create_Script", "made.cmd");
  type("Move_Script", "moved.cmd");
  type("Delete_Script", "gone.cmd");
  for (const char* const name :
       {"Run_Hidden_0", "Run_Hidden_1", "Run_Hidden_2", "Wait_NEW_0", "Wait_NEW_1", "Wait_NEW_2"}) {
    if (!find<QCheckBox>(name)->isChecked())
      tick(name);
  }
  click("Command3");
  for (const auto& [name, value] :
       {std::pair("Domain", "twk.test"), std::pair("DataBasePath", "C:\\data\\"),
        std::pair("Password", "Secret-1"), std::pair("FormattedPassword", "%first%-1"),
        std::pair("SetupID", "1%first%%last%"), std::pair("AltSetupID", "%last%"),
        std::pair("BatchFileCreate", "made.cmd"), std::pair("BatchFileMove", "moved.cmd"),
        std::pair("BatchFileDelete", "gone.cmd"), std::pair("CreateHidden", "Yes"),
        std::pair("MoveHidden", "Yes"), std::pair("DeleteHidden", "Yes"), std::pair("WaitNew", "Yes"),
        std::pair("WaitMove", "Yes"), std::pair("WaitDelete", "Yes")})
    EXPECT_EQ(setting("Setup", name), value) << name;
}

TEST_F(SetupTabTest, TheTestFieldsFollowWhatIsTyped) {
  open_tab(session::setup_tab::kSetup);
  type("setupid", "1%first%%last%");
  EXPECT_EQ(find<QLineEdit>("testuserid")->text(), "JSmith");
  type("ALTID", "%last%.%first%");
  EXPECT_EQ(find<QLineEdit>("TESTUSERALTID")->text(), "Smith.John");
  type("setupid", "%%%first");
  type("setupid", "");
  EXPECT_EQ(find<QLineEdit>("testuserid")->text(), "");
}

TEST_F(SetupTabTest, APresetPutsItsFormatIntoTheField) {
  open_tab(session::setup_tab::kSetup);
  for (const auto& [button, format, gives] : {std::tuple("Option1_0", "%last%#1%first%", "SmithJ"),
                                              std::tuple("Option1_1", "%first%#1%last%", "JohnS"),
                                              std::tuple("Option1_2", "1%first%%last%", "JSmith"),
                                              std::tuple("Option1_3", "%first%%last%", "JohnSmith"),
                                              std::tuple("Option1_4", "%first%%last%", "JohnSmith")}) {
    pick(button);
    EXPECT_EQ(find<QLineEdit>("setupid")->text(), format) << button;
    EXPECT_EQ(find<QLineEdit>("testuserid")->text(), gives) << button;
  }
  EXPECT_EQ(setting("Setup", "UserFormat"), "5");
  window->setup_tabs().setCurrentIndex(session::setup_tab::kPreferences);
  pick("FullName_Format_2");
  EXPECT_EQ(find<QLineEdit>("FN_Format_Check")->text(), "Smith John");
  EXPECT_EQ(setting("Preferences", "FullName"), "3");
}

TEST_F(SetupTabTest, APreferenceIsStoredAsSoonAsItIsTicked) {
  open_tab(session::setup_tab::kPreferences);
  for (const auto& [box, name] :
       {std::pair("PWD_NVR_EXPIRE", "PasswdNVRExpire"), std::pair("New_Disabled", "AccountDisabled"),
        std::pair("Confirm_Deletes", "ConfirmDeletes"), std::pair("Confirm_Resets", "ConfirmResets"),
        std::pair("Domain_Admin", "CheckAdminRights"), std::pair("STOP_ON_RED_2", "SkipPrompt")}) {
    for (int twice = 0; twice < 2; ++twice) {
      tick(box);
      EXPECT_EQ(setting("Preferences", name), find<QCheckBox>(box)->isChecked() ? "Yes" : "No") << box;
    }
  }
  pick("SamAccountName");
  EXPECT_EQ(setting("Preferences", "CNNAME"), "No");
  EXPECT_FALSE(find<QRadioButton>("CNName")->isChecked());
}

TEST_F(SetupTabTest, OnePreferenceRulesAnother) {
  lab.set("Preferences", "StopOnError", "No");
  lab.set("Preferences", "StopOnWarning", "No");
  open_tab(session::setup_tab::kPreferences);
  auto* const on_errors = find<QCheckBox>("STOP_ON_RED_0");
  tick("STOP_ON_RED_1");
  EXPECT_TRUE(on_errors->isChecked());
  EXPECT_FALSE(on_errors->isEnabled());
  tick("STOP_ON_RED_1");
  EXPECT_TRUE(on_errors->isEnabled());
  EXPECT_EQ(setting("Preferences", "StopOnError"), "Yes");
  auto* const must_change = find<QCheckBox>("Password_Change");
  if (!must_change->isChecked())
    tick("Password_Change");
  tick("USR_Cant_Change");
  EXPECT_FALSE(must_change->isChecked());
  EXPECT_FALSE(must_change->isEnabled());
  EXPECT_EQ(setting("Preferences", "ForcePasswdChange"), "No");
}

TEST_F(SetupTabTest, TheFormattedPasswordIsThereWhileItIsUsed) {
  lab.set("Preferences", "UseFormattedPassword", "No");
  open_tab(session::setup_tab::kPreferences);
  for (const bool used : {true, false}) {
    window->setup_tabs().setCurrentIndex(session::setup_tab::kPreferences);
    tick("FmtPass");
    window->setup_tabs().setCurrentIndex(session::setup_tab::kSetup);
    EXPECT_EQ(find<QLineEdit>("Formatted_Password")->isVisible(), used);
    EXPECT_EQ(find<QGroupBox>("Frame4")->title(), used ? "Default Passwords" : "Default Password");
  }
}

}  // namespace
}  // namespace twk::test
