#include "session/settings.hpp"

#include "support/world.hpp"
#include "windows/formats_tab.hpp"
#include "windows/preferences_tab.hpp"
#include "windows/read_settings.hpp"
#include "windows/setting_controls.hpp"
#include "windows/setup_tab.hpp"
#include "windows/state/form1.hpp"

namespace twk::windows {
namespace {

class SettingsTest : public test::TestWorld {
 protected:
  windows::Form1& form1 = session.form1;
};

TEST_F(SettingsTest, AnEmptyRegistryMeansTheDefaultsOfAFreshInstallation) {
  read_settings(session);
  EXPECT_EQ(setting("Version", "DBVersion"), "2.4");
  EXPECT_EQ(session.DomainName, "%Domain%");
  EXPECT_EQ(form1.dbpath.text.get(), "/opt/twk\\");
  EXPECT_EQ(session.ProfileTemplateFile, "NTUser.dat");
  EXPECT_EQ(form1.Option1.index.get(), 2);
  EXPECT_EQ(form1.FullName_Format.index.get(), 0);
  EXPECT_EQ(form1.testuserid.text.get(), "JSmith");
  EXPECT_EQ(form1.FN_Format_Check.text.get(), "John Fred Smith");
  EXPECT_TRUE(session.ManageSubOUs);
  EXPECT_FALSE(session.LoadAllUsersFlag);
  EXPECT_TRUE(form1.CNName.value.get());
  EXPECT_TRUE(form1.Sorted_No.value.get());
  EXPECT_TRUE(form1.DNName.value.get());
  for (const controls::CheckBox* const ticked :
       {&form1.Confirm_Deletes, &form1.Confirm_Resets, &form1.chkAdmin_Shares, &form1.Create_Dirs,
        &form1.Create_Shares, &form1.Dir_Security, &form1.Create_User_Account, &form1.Create_Mail_Account,
        &form1.Run_script, &form1.Mail_Logon})
    EXPECT_TRUE(ticked->on());
  for (const controls::CheckBox* const unticked :
       {&form1.FmtPass, &form1.USR_Cant_Change, &form1.PWD_NVR_EXPIRE, &form1.Domain_Admin,
        &form1.New_Disabled, &form1.Password_Change, &form1.STOP_ON_RED[0], &form1.STOP_ON_RED[1],
        &form1.STOP_ON_RED[2]})
    EXPECT_FALSE(unticked->on());
  EXPECT_FALSE(form1.txtAdmin.enabled.get());
  EXPECT_FALSE(form1.mnupopup[12].visible.get());
  EXPECT_FALSE(form1.Custom_Value[0].visible.get());
  EXPECT_EQ(form1.Frame4.caption.get(), "Default Password");
}

TEST_F(SettingsTest, TextsAreReadWithoutTheBlanksAroundThem) {
  set("Version", "DBVersion", "");
  set("Setup", "Domain", "twk.test");
  set("Setup", "Password", " pw ");
  set("Setup", "DataBasePath", " /srv/db\\ ");
  set("Setup", "Profiles", " NTUser.man ");
  set("Setup", "BatchFileCreate", " create ");
  set("Setup", "BatchFileMove", " move ");
  set("Setup", "SetupID", "%last%");
  set("Setup", "AltSetupID", "%first%%n%");
  set("Mail", "LDAP_PORT", " 390 ");
  read_settings(session);
  EXPECT_EQ(session.DomainName, "twk.test");
  EXPECT_EQ(form1.defaultpassword.text.get(), "pw");
  EXPECT_EQ(form1.dbpath.text.get(), "/srv/db\\");
  EXPECT_EQ(session.ProfileTemplateFile, "NTUser.man");
  EXPECT_EQ(form1.Create_Script.text.get(), "create");
  EXPECT_EQ(form1.Move_Script.text.get(), "move");
  EXPECT_EQ(form1.testuserid.text.get(), "Smith");
  EXPECT_EQ(form1.TESTUSERALTID.text.get(), "John0");
  EXPECT_EQ(form1.PORT.text.get(), "390");
  EXPECT_EQ(setting("Version", "DBVersion"), "") << "what is there stays";
}

TEST_F(SettingsTest, AScriptThatWasNeverSavedStaysAsDesigned) {
  form1.Create_Script.text = "as designed";
  form1.Move_Script.text = "left over";
  read_settings(session);
  EXPECT_EQ(form1.Create_Script.text.get(), "as designed");
  EXPECT_EQ(form1.Move_Script.text.get(), "");
}

TEST_F(SettingsTest, NumbersSelectAnEntryOrTheDefault) {
  struct Case {
    std::string_view stored;
    int account_entry;
    int full_name_entry;
  };
  const Case cases[] = {{"1", 0, 0}, {"4", 3, 3}, {"5", 4, 0}, {"0", 2, 0}, {"6", 2, 0}, {"x", 2, 0}};
  for (const Case& one : cases) {
    set("Setup", "UserFormat", one.stored);
    set("Preferences", "FullName", one.stored);
    read_settings(session);
    EXPECT_EQ(form1.Option1.index.get(), one.account_entry) << one.stored;
    EXPECT_EQ(form1.FullName_Format.index.get(), one.full_name_entry) << one.stored;
  }
}

TEST_F(SettingsTest, EachWordIsComparedInItsOwnWay) {
  struct Case {
    std::string_view names;
    std::string_view ticks;
    std::string_view unticks;
  };
  const Case cases[] = {
      {"UseFormattedPassword CantChangePWD PasswdNVRExpire ProfileDeleteUsername", "YES yes Yes",
       "No True x"},
      {"ConfirmDeletes AdminShares ConfirmResets", "Yes no NO x", "No"},
      {"CheckAdminRights AccountDisabled ForcePasswdChange SkipPrompt StopOnWarning StopOnError", "Yes",
       "yes YES No x"},
      {"CreateDirs CreateShares SetPermissions UserAccount MailAccount RunCmd", "Yes", "yes No x"},
      {"CreateHidden MoveHidden DeleteHidden WaitNew WaitMove WaitDelete", "Yes", "yes No x"},
  };
  std::size_t boxes = 0;
  const auto expect_ticks = [&](const SettingBox& row) {
    const std::string name = " " + std::string(row.name) + " ";
    for (const Case& one : cases) {
      if ((" " + std::string(one.names) + " ").find(name) == base::npos)
        continue;
      ++boxes;
      for (const bool ticked : {true, false}) {
        for (const std::string& word : base::split(ticked ? one.ticks : one.unticks, ' ')) {
          set(row.sub_key, row.name, word);
          read_setting_controls(session);
          EXPECT_EQ(row.box.on(), ticked) << row.name << " " << word;
        }
      }
    }
  };
  std::ranges::for_each(setting_boxes(form1), expect_ticks);
  std::ranges::for_each(command_boxes(form1), expect_ticks);
  EXPECT_EQ(boxes, setting_boxes(form1).size() + command_boxes(form1).size());
  for (const auto& [word, own] : {std::pair("FALSE", true), {"false", true}, {"True", false}, {"x", false}}) {
    set("Mail", "MailCredentials", word);
    read_settings(session);
    EXPECT_EQ(form1.Mail_Logon.on(), !own) << word;
  }
}

TEST_F(SettingsTest, TheFormattedPasswordIsReadOnlyWhenItIsUsed) {
  set("Setup", "FormattedPassword", " %first% ");
  read_settings(session);
  EXPECT_EQ(form1.Formatted_Password.text.get(), "");
  set("Preferences", "UseFormattedPassword", "yes");
  read_settings(session);
  EXPECT_EQ(form1.Formatted_Password.text.get(), "%first%");
  EXPECT_EQ(form1.Frame4.caption.get(), "Default Passwords");
  EXPECT_TRUE(form1.Formatted_Password.enabled.get());
}

TEST_F(SettingsTest, TheManagedUnitComesWithItsFlagFromOneHive) {
  set("Setup", "OU", "OU=Own", platform::kHiveCurrentUser);
  set("Setup", "SUBOU", "No", platform::kHiveCurrentUser);
  read_settings(session);
  EXPECT_EQ(session.ManagedOU, "OU=Own");
  EXPECT_FALSE(session.ManageSubOUs);
  set("Setup", "OU", "OU=All");
  read_settings(session);
  EXPECT_EQ(session.ManagedOU, "OU=All");
  EXPECT_TRUE(session.ManageSubOUs);
}

TEST_F(SettingsTest, APasswordThatCannotChangeRulesOutThatItMust) {
  set("Preferences", "CantChangePWD", "No");
  set("Preferences", "ForcePasswdChange", "Yes");
  read_settings(session);
  EXPECT_TRUE(form1.Password_Change.on());
  EXPECT_TRUE(form1.Password_Change.enabled.get());
  form1.USR_Cant_Change.value = 1;
  USR_Cant_Change_Click(session);
  EXPECT_EQ(setting("Preferences", "ForcePasswdChange"), "No");
  for (const bool read_again : {false, true}) {
    if (read_again) {
      set("Preferences", "ForcePasswdChange", "Yes");
      read_settings(session);
    }
    EXPECT_FALSE(form1.Password_Change.on());
    EXPECT_FALSE(form1.Password_Change.enabled.get());
  }
}

TEST_F(SettingsTest, CustomCommandsAreShownWhenTheyAreComplete) {
  set("Custom", "Menu1", "Open &home");
  set("Custom", "Script1", "open %UserName%");
  read_settings(session);
  EXPECT_FALSE(form1.mnupopup[14].visible.get());
  set("Custom", "RUNHIDDEN1", "");
  set("Custom", "Custom2", "Cost centre");
  read_settings(session);
  EXPECT_EQ(form1.mnupopup[14].caption.get(), "Open &home");
  EXPECT_TRUE(form1.mnupopup[14].enabled.get());
  EXPECT_TRUE(form1.mnupopup[12].visible.get());
  EXPECT_FALSE(form1.mnupopup[13].visible.get());
  EXPECT_TRUE(form1.Custom_Value[1].visible.get());
  EXPECT_EQ(form1.Custom_Label[1].caption.get(), "Cost centre");
  EXPECT_FALSE(form1.Custom_Label[2].visible.get());
}

TEST_F(SettingsTest, LastRegResultSaysWhetherAValueExists) {
  EXPECT_EQ(session::read_setting(session, session::kSetup, "none"), "");
  EXPECT_FALSE(session.LastRegResult);
  session::write_setting(session, session::kSetup, "some", "");
  EXPECT_TRUE(session.LastRegResult);
  EXPECT_EQ(session::read_setting(session, "SETUP", "SOME"), "");
  EXPECT_TRUE(session.LastRegResult);
  registry.read_only = true;
  session::write_setting(session, session::kSetup, "some", "x");
  EXPECT_FALSE(session.LastRegResult);
}

TEST_F(SettingsTest, SavingTheSetUpTabStoresItsFieldsInOrderAndThePathWithItsEnd) {
  form1.dbpath.text = " /srv/db ";
  EXPECT_NE(session.dbpath, "/srv/db\\") << "it is only typed";
  form1.setupid.text = "#U%last%";
  form1.ALTID.text = "1%first%";
  Command3_Click(session);
  EXPECT_EQ(form1.dbpath.text.get(), "/srv/db\\");
  EXPECT_EQ(session.dbpath, "/srv/db\\");
  EXPECT_EQ(setting("Setup", "DataBasePath"), "/srv/db\\");
  EXPECT_EQ(form1.testuserid.text.get(), "SMITH");
  EXPECT_EQ(form1.TESTUSERALTID.text.get(), "J");
  EXPECT_THAT(
      registry.written,
      testing::ElementsAre("Domain", "Password", "FormattedPassword", "DataBasePath", "SetupID", "AltSetupID",
                           "BatchFileCreate", "BatchFileMove", "BatchFileDelete", "CreateHidden",
                           "MoveHidden", "DeleteHidden", "WaitNew", "WaitMove", "WaitDelete"));
  form1.dbpath.text = "  ";
  Command3_Click(session);
  EXPECT_EQ(setting("Setup", "DataBasePath"), "");
}

TEST_F(SettingsTest, PresetFormatsFillTheFieldAndCustomOnesLeaveIt) {
  const char* const accounts[] = {"SmithJ", "JohnS", "JSmith", "JohnSmith", "custom"};
  for (int i = 0; i < 5; ++i) {
    form1.setupid.text = "custom";
    form1.testuserid.text = "custom";
    form1.Option1.index = i;
    Option1_Click(session);
    EXPECT_EQ(form1.testuserid.text.get(), accounts[i]);
    EXPECT_EQ(setting("Setup", "UserFormat"), base::to_text(i + 1));
  }
  EXPECT_EQ(form1.setupid.text.get(), "custom");
  const char* const full_names[] = {"John Fred Smith", "John Smith", "Smith John", "custom"};
  for (int i = 0; i < 4; ++i) {
    form1.FN_Format.text = "custom";
    form1.FN_Format_Check.text = "custom";
    form1.FullName_Format.index = i;
    FullName_Format_Click(session);
    EXPECT_EQ(form1.FN_Format_Check.text.get(), full_names[i]);
    EXPECT_EQ(setting("Preferences", "FullName"), base::to_text(i + 1));
  }
  Check_FN_Format_Click(session);
  EXPECT_EQ(setting("Preferences", "Custom_FN"), "custom");
}

TEST_F(SettingsTest, AStoredPresetCountsAtTheNextStartAndATypedFormatMakesTheChoiceCustom) {
  set("Setup", "SetupID", "old");
  set("Preferences", "Custom_FN", "old");
  read_settings(session);
  EXPECT_EQ(form1.setupid.text.get(), "old") << "no choice is stored";
  set("Setup", "UserFormat", "4");
  set("Preferences", "FullName", "3");
  read_settings(session);
  EXPECT_EQ(form1.setupid.text.get(), "%first%%last%");
  EXPECT_EQ(form1.FN_Format.text.get(), "%Last% %First%");
  form1.setupid.text = "#U%last%";
  Command3_Click(session);
  form1.FN_Format.text = "Dr. %Last%";
  Check_FN_Format_Click(session);
  EXPECT_EQ(setting("Setup", "UserFormat"), "5");
  EXPECT_EQ(setting("Preferences", "FullName"), "4");
  read_settings(session);
  EXPECT_EQ(form1.setupid.text.get(), "#U%last%");
  EXPECT_EQ(form1.FN_Format.text.get(), "Dr. %Last%");
}

TEST_F(SettingsTest, AnOptionButtonIsStoredWhenItIsChosen) {
  for (const SettingPair& pair : setting_pairs(form1)) {
    for (const bool on : {false, true}) {
      choose_option(session, on ? pair.on : pair.off);
      EXPECT_EQ(setting("Preferences", pair.name), on ? "Yes" : "No");
      controls::choose(pair.on, pair.off, !on);
      read_settings(session);
      EXPECT_EQ(pair.on.value.get(), on) << pair.name;
      EXPECT_EQ(pair.off.value.get(), !on) << pair.name;
    }
  }
  form1.Run_Hidden[0].value = 1;
  Run_Hidden_Click(session);
  EXPECT_EQ(setting("Setup", "RunHidden"), "Yes");
}

TEST_F(SettingsTest, HaltingOnWarningsCarriesHaltingOnErrors) {
  for (const bool on : {true, false}) {
    form1.STOP_ON_RED[1].value = on ? 1 : 0;
    STOP_ON_RED_Click(session);
    EXPECT_TRUE(form1.STOP_ON_RED[0].on());
    EXPECT_NE(form1.STOP_ON_RED[0].enabled.get(), on);
    EXPECT_EQ(setting("Preferences", "StopOnError"), "Yes");
    EXPECT_EQ(setting("Preferences", "StopOnWarning"), on ? "Yes" : "No");
  }
}

TEST_F(SettingsTest, MailCredentialsAreStoredOnlyWhenTheyAreUsed) {
  form1.PORT.text = "389";
  form1.txtAdmin.text = "admin";
  form1.txtPassword.text = "secret";
  for (const bool used : {false, true}) {
    form1.Mail_Logon.value = used ? 0 : 1;
    Mail_Logon_Click(session);
    savemail_Click(session);
    EXPECT_EQ(setting("Mail", "LDAP_PORT"), "389");
    EXPECT_EQ(setting("Mail", "MailCredentials"), used ? "False" : "True");
    EXPECT_EQ(setting("Mail", "Admin_Account"), used ? "admin" : "(none)");
    EXPECT_EQ(setting("Mail", "Mail_Password"), used ? "secret" : "(none)");
    EXPECT_EQ(form1.txtPassword.enabled.get(), used);
  }
}

TEST_F(SettingsTest, DriveLettersBeginWithNone) {
  for (const controls::ComboBox* const box : {&form1.Home_Drive_letter, &form1.UM_Drive_Letter}) {
    ASSERT_EQ(box->items().size(), 27U);
    EXPECT_EQ(box->items().front(), "");
    EXPECT_EQ(box->items().back(), "Z:");
    EXPECT_EQ(box->text.get(), "");
  }
  EXPECT_EQ(session.TemplateLogonHours, base::Bytes(21, 255));
  EXPECT_FALSE(form1.add.enabled.get());
  EXPECT_TRUE(form1.UM_ADD_GROUP.enabled.get());
}

}  // namespace
}  // namespace twk::windows
