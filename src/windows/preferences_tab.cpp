#include "windows/preferences_tab.hpp"

#include "session/form1.hpp"
#include "session/settings.hpp"
#include "windows/read_settings.hpp"

namespace twk::windows {
namespace {

void store(session::Session& session, std::string_view sub_key, std::string_view name,
           const controls::CheckBox& box) {
  session::write_yes_no(session, sub_key, name, box.on());
}

/// Chooses one button of a pair and stores the word that stands for it.
void choose(session::Session& session, std::string_view name, controls::OptionButton& chosen,
            controls::OptionButton& other, bool word) {
  chosen.value = true;
  other.value = false;
  session::write_yes_no(session, session::kPreferences, name, word);
}

}  // namespace

void Create_Dirs_Click(session::Session& session) {
  store(session, session::kUM, "CreateDirs", session.form1.Create_Dirs);
}

void Create_Shares_Click(session::Session& session) {
  store(session, session::kUM, "CreateShares", session.form1.Create_Shares);
}

void Dir_Security_Click(session::Session& session) {
  store(session, session::kUM, "SetPermissions", session.form1.Dir_Security);
}

void Create_User_Account_Click(session::Session& session) {
  store(session, session::kUM, "UserAccount", session.form1.Create_User_Account);
}

void Create_Mail_Account_Click(session::Session& session) {
  store(session, session::kUM, "MailAccount", session.form1.Create_Mail_Account);
}

void Run_script_Click(session::Session& session) {
  store(session, session::kUM, "RunCmd", session.form1.Run_script);
}

void PWD_NVR_EXPIRE_Click(session::Session& session) {
  store(session, session::kPreferences, "PasswdNVRExpire", session.form1.PWD_NVR_EXPIRE);
}

void Profile_Delete_Name_Click(session::Session& session) {
  store(session, session::kPreferences, "ProfileDeleteUsername", session.form1.Profile_Delete_Name);
}

void Confirm_Deletes_Click(session::Session& session) {
  store(session, session::kPreferences, "ConfirmDeletes", session.form1.Confirm_Deletes);
}

void Confirm_Resets_Click(session::Session& session) {
  store(session, session::kPreferences, "ConfirmResets", session.form1.Confirm_Resets);
}

void chkAdmin_Shares_Click(session::Session& session) {
  store(session, session::kPreferences, "AdminShares", session.form1.chkAdmin_Shares);
}

void Domain_Admin_Click(session::Session& session) {
  store(session, session::kPreferences, "CheckAdminRights", session.form1.Domain_Admin);
}

void New_Disabled_Click(session::Session& session) {
  store(session, session::kPreferences, "AccountDisabled", session.form1.New_Disabled);
}

void Password_Change_Click(session::Session& session) {
  store(session, session::kPreferences, "ForcePasswdChange", session.form1.Password_Change);
}

void USR_Cant_Change_Click(session::Session& session) {
  session::Form1& form1 = session.form1;
  const bool fixed = form1.USR_Cant_Change.on();
  store(session, session::kPreferences, "CantChangePWD", form1.USR_Cant_Change);
  form1.Password_Change.enabled = !fixed;
  if (fixed) {
    form1.Password_Change.value = 0;
    Password_Change_Click(session);
  }
}

void CNName_Click(session::Session& session) {
  choose(session, "CNNAME", session.form1.CNName, session.form1.SamAccountName, true);
}

void SamAccountName_Click(session::Session& session) {
  choose(session, "CNNAME", session.form1.SamAccountName, session.form1.CNName, false);
}

void Sorted_Yes_Click(session::Session& session) {
  choose(session, "Sorted", session.form1.Sorted_Yes, session.form1.Sorted_No, true);
}

void Sorted_No_Click(session::Session& session) {
  choose(session, "Sorted", session.form1.Sorted_No, session.form1.Sorted_Yes, false);
}

void DisplayName_Click(session::Session& session) {
  choose(session, "DisplayName", session.form1.DisplayName, session.form1.DNName, true);
}

void DNName_Click(session::Session& session) {
  choose(session, "DisplayName", session.form1.DNName, session.form1.DisplayName, false);
}

void STOP_ON_RED_Click(session::Session& session) {
  auto& [on_errors, on_warnings, skip_prompt] = session.form1.STOP_ON_RED;
  if (on_warnings.on())
    on_errors.value = 1;
  on_errors.enabled = !on_warnings.on();
  store(session, session::kPreferences, "StopOnError", on_errors);
  store(session, session::kPreferences, "StopOnWarning", on_warnings);
  store(session, session::kPreferences, "SkipPrompt", skip_prompt);
}

void Mail_Logon_Click(session::Session& session) {
  show_mail_credentials(session);
}

void savemail_Click(session::Session& session) {
  const session::Form1& form1 = session.form1;
  session::write_setting(session, session::kMail, "LDAP_PORT", form1.PORT.text.get());
  session::write_setting(session, session::kMail, "MailCredentials",
                         form1.Mail_Logon.on() ? "True" : "False");
  if (form1.Mail_Logon.on())
    return;
  session::write_setting(session, session::kMail, "Admin_Account", form1.txtAdmin.text.get());
  session::write_setting(session, session::kMail, "Mail_Password", form1.txtPassword.text.get());
}

}  // namespace twk::windows
