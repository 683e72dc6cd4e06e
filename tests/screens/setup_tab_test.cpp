#include "screens/screen_test.hpp"
#include "session/settings.hpp"
#include "windows/start_up.hpp"
#include "windows/state/form1.hpp"

namespace twk::test {
namespace {

class SetupTabTest : public ScreenTest {
 protected:
  void open_tab(int setup_tab) {
    open();
    window->tabs().setCurrentIndex(windows::tab::kSetup);
    window->setup_tabs().setCurrentIndex(setup_tab);
  }
  std::string setting(std::string_view sub_key, std::string_view name) {
    return session::read_setting(lab.session, sub_key, name);
  }
  void tick(const char* name) { press(name, Qt::Key_Space); }
};

TEST_F(SetupTabTest, AFirstRunBeginsThereWithAHint) {
  lab.set("Setup", "Domain", "");
  ASSERT_EQ(windows::start_session(lab.session), windows::StartUp::kReady);
  window = std::make_unique<screens::MainWindow>(lab.session);
  window->show();
  EXPECT_EQ(window->tabs().currentIndex(), windows::tab::kSetup);
  EXPECT_EQ(status(), "Must Enter Setup Details...");
  EXPECT_TRUE(find<QLabel>("first_run")->isVisible());
  type("DomName", "twk.test");
  click("Command3");
  EXPECT_EQ(setting("Setup", "Domain"), "twk.test");
}

TEST_F(SetupTabTest, SaveStoresEveryField) {
  open_tab(windows::setup_tab::kSetup);
  EXPECT_FALSE(find<QLabel>("first_run")->isVisible());
  tick("FmtPass");
  const std::tuple<const char*, const char*, const char*> fields[] = {
      {"dbpath", "DataBasePath", "C:\\data\\"},
      {"defaultpassword", "Password", "Secret-1"},
      {"Formatted_Password", "FormattedPassword", "%first%-1"},
      {"setupid", "SetupID", "1%first%%last%"},
      {"ALTID", "AltSetupID", "%last%.%first%"},
      {"Create_Script", "BatchFileCreate", "made.cmd"},
      {"Move_Script", "BatchFileMove", "moved.cmd"},
      {"Delete_Script", "BatchFileDelete", "gone.cmd"}};
  for (const auto& [field, name, value] : fields)
    type(field, value);
  EXPECT_EQ(find<QLineEdit>("testuserid")->text(), "JSmith");
  EXPECT_EQ(find<QLineEdit>("TESTUSERALTID")->text(), "Smith.John");
  const std::pair<const char*, const char*> boxes[] = {
      {"Run_Hidden_0", "CreateHidden"}, {"Run_Hidden_1", "MoveHidden"}, {"Run_Hidden_2", "DeleteHidden"},
      {"Wait_NEW_0", "WaitNew"},        {"Wait_NEW_1", "WaitMove"},     {"Wait_NEW_2", "WaitDelete"}};
  for (const auto& [box, name] : boxes) {
    tick(box);
    click("Command3");
    EXPECT_EQ(setting("Setup", name), find<QCheckBox>(box)->isChecked() ? "Yes" : "No") << box;
  }
  for (const auto& [field, name, value] : fields)
    EXPECT_EQ(setting("Setup", name), value);
}

TEST_F(SetupTabTest, WhatKeepsNoPasswordInTheSettingsIsOfferedFirstWhileItIsUsed) {
  lab.set("Preferences", "UseFormattedPassword", "No");
  open_tab(windows::setup_tab::kSetup);
  EXPECT_LT(find<QLineEdit>("Formatted_Password")->y(), find<QLineEdit>("defaultpassword")->y());
  EXPECT_THAT(find<QLabel>("password_note")->text().toStdString(), testing::HasSubstr("readable text"));
  for (const bool used : {true, false}) {
    window->setup_tabs().setCurrentIndex(windows::setup_tab::kPreferences);
    tick("FmtPass");
    EXPECT_EQ(setting("Preferences", "UseFormattedPassword"), used ? "YES" : "No");
    window->setup_tabs().setCurrentIndex(windows::setup_tab::kSetup);
    EXPECT_EQ(find<QLineEdit>("Formatted_Password")->isVisible(), used);
    EXPECT_EQ(find<QGroupBox>("Frame4")->title(), used ? "Default Passwords" : "Default Password");
  }
}

TEST_F(SetupTabTest, APresetPutsItsFormatIntoTheField) {
  open_tab(windows::setup_tab::kSetup);
  for (const auto& [button, gives] : {std::pair("Option1_0", "SmithJ"),
                                      {"Option1_1", "JohnS"},
                                      {"Option1_2", "JSmith"},
                                      {"Option1_3", "JohnSmith"},
                                      {"Option1_4", "JohnSmith"}}) {
    click(button);
    EXPECT_EQ(find<QLineEdit>("testuserid")->text(), gives) << button;
  }
  EXPECT_EQ(setting("Setup", "UserFormat"), "5");
  window->setup_tabs().setCurrentIndex(windows::setup_tab::kPreferences);
  click("FullName_Format_2");
  EXPECT_EQ(find<QLineEdit>("FN_Format_Check")->text(), "Smith John");
  type("FN_Format", "%Last%");
  EXPECT_EQ(find<QLineEdit>("FN_Format_Check")->text(), "Smith");
}

TEST_F(SetupTabTest, APreferenceIsStoredAsSoonAsItIsChosen) {
  lab.set("Preferences", "StopOnError", "No");
  lab.set("Preferences", "StopOnWarning", "No");
  open_tab(windows::setup_tab::kPreferences);
  for (const auto& [box, name] : {std::pair("Password_Change", "ForcePasswdChange"),
                                  {"USR_Cant_Change", "CantChangePWD"},
                                  {"PWD_NVR_EXPIRE", "PasswdNVRExpire"},
                                  {"New_Disabled", "AccountDisabled"},
                                  {"Confirm_Deletes", "ConfirmDeletes"},
                                  {"Confirm_Resets", "ConfirmResets"},
                                  {"Domain_Admin", "CheckAdminRights"},
                                  {"chkAdmin_Shares", "AdminShares"},
                                  {"Profile_Delete_Name", "ProfileDeleteUsername"},
                                  {"STOP_ON_RED_0", "StopOnError"},
                                  {"STOP_ON_RED_1", "StopOnWarning"},
                                  {"STOP_ON_RED_2", "SkipPrompt"}}) {
    for (int twice = 0; twice < 2; ++twice) {
      tick(box);
      EXPECT_EQ(setting("Preferences", name), find<QCheckBox>(box)->isChecked() ? "Yes" : "No") << box;
    }
  }
  click("SamAccountName");
  EXPECT_EQ(setting("Preferences", "CNNAME"), "No");
  EXPECT_FALSE(find<QRadioButton>("CNName")->isChecked());
}

TEST_F(SetupTabTest, OnePreferenceRulesAnother) {
  open_tab(windows::setup_tab::kPreferences);
  for (const auto& [ruling, ruled] :
       {std::pair("STOP_ON_RED_1", "STOP_ON_RED_0"), {"USR_Cant_Change", "Password_Change"}}) {
    ASSERT_FALSE(find<QCheckBox>(ruling)->isChecked());
    tick(ruling);
    EXPECT_FALSE(find<QCheckBox>(ruled)->isEnabled());
    tick(ruling);
    EXPECT_TRUE(find<QCheckBox>(ruled)->isEnabled());
  }
}

}  // namespace
}  // namespace twk::test
