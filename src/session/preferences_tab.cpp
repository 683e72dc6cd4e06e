#include "session/preferences_tab.hpp"

#include "session/settings.hpp"

namespace twk::session {
namespace {

void store(Session& session, std::string_view sub_key, std::string_view name, const controls::CheckBox& box) {
  write_yes_no(session, sub_key, name, box.on());
}

/// Chooses one button of a pair and stores the word that stands for it.
void choose(Session& session, std::string_view name, controls::OptionButton& chosen,
            controls::OptionButton& other, bool word) {
  chosen.value = true;
  other.value = false;
  write_yes_no(session, kPreferences, name, word);
}

}  // namespace

void Create_Dirs_Click(Session& session) {
  store(session, kUM, "CreateDirs", session.form1.Create_Dirs);
}

void Create_Shares_Click(Session& session) {
  store(session, kUM, "CreateShares", session.form1.Create_Shares);
}

void Dir_Security_Click(Session& session) {
  store(session, kUM, "SetPermissions", session.form1.Dir_Security);
}

void Create_User_Account_Click(Session& session) {
  store(session, kUM, "UserAccount", session.form1.Create_User_Account);
}

void Create_Mail_Account_Click(Session& session) {
  store(session, kUM, "MailAccount", session.form1.Create_Mail_Account);
}

void Run_script_Click(Session& session) {
  store(session, kUM, "RunCmd", session.form1.Run_script);
}

void PWD_NVR_EXPIRE_Click(Session& session) {
  store(session, kPreferences, "PasswdNVRExpire", session.form1.PWD_NVR_EXPIRE);
}

void Profile_Delete_Name_Click(Session& session) {
  store(session, kPreferences, "ProfileDeleteUsername", session.form1.Profile_Delete_Name);
}

void Confirm_Deletes_Click(Session& session) {
  store(session, kPreferences, "ConfirmDeletes", session.form1.Confirm_Deletes);
}

void Confirm_Resets_Click(Session& session) {
  store(session, kPreferences, "ConfirmResets", session.form1.Confirm_Resets);
}

void chkAdmin_Shares_Click(Session& session) {
  store(session, kPreferences, "AdminShares", session.form1.chkAdmin_Shares);
}

void Domain_Admin_Click(Session& session) {
  store(session, kPreferences, "CheckAdminRights", session.form1.Domain_Admin);
}

void New_Disabled_Click(Session& session) {
  store(session, kPreferences, "AccountDisabled", session.form1.New_Disabled);
}

void Password_Change_Click(Session& session) {
  store(session, kPreferences, "ForcePasswdChange", session.form1.Password_Change);
}

void USR_Cant_Change_Click(Session& session) {
  Form1& form1 = session.form1;
  const bool fixed = form1.USR_Cant_Change.on();
  store(session, kPreferences, "CantChangePWD", form1.USR_Cant_Change);
  form1.Password_Change.enabled = !fixed;
  if (fixed) {
    form1.Password_Change.value = 0;
    Password_Change_Click(session);
  }
}

void CNName_Click(Session& session) {
  choose(session, "CNNAME", session.form1.CNName, session.form1.SamAccountName, true);
}

void SamAccountName_Click(Session& session) {
  choose(session, "CNNAME", session.form1.SamAccountName, session.form1.CNName, false);
}

void Sorted_Yes_Click(Session& session) {
  choose(session, "Sorted", session.form1.Sorted_Yes, session.form1.Sorted_No, true);
}

void Sorted_No_Click(Session& session) {
  choose(session, "Sorted", session.form1.Sorted_No, session.form1.Sorted_Yes, false);
}

void DisplayName_Click(Session& session) {
  choose(session, "DisplayName", session.form1.DisplayName, session.form1.DNName, true);
}

void DNName_Click(Session& session) {
  choose(session, "DisplayName", session.form1.DNName, session.form1.DisplayName, false);
}

void STOP_ON_RED_Click(Session& session) {
  auto& [on_errors, on_warnings, skip_prompt] = session.form1.STOP_ON_RED;
  if (on_warnings.on())
    on_errors.value = 1;
  on_errors.enabled = !on_warnings.on();
  store(session, kPreferences, "StopOnError", on_errors);
  store(session, kPreferences, "StopOnWarning", on_warnings);
  store(session, kPreferences, "SkipPrompt", skip_prompt);
}

void Mail_Logon_Click(Session& session) {
  show_mail_credentials(session);
}

void savemail_Click(Session& session) {
  const Form1& form1 = session.form1;
  write_setting(session, kMail, "LDAP_PORT", form1.PORT.text.get());
  write_setting(session, kMail, "MailCredentials", form1.Mail_Logon.on() ? "True" : "False");
  if (form1.Mail_Logon.on())
    return;
  write_setting(session, kMail, "Admin_Account", form1.txtAdmin.text.get());
  write_setting(session, kMail, "Mail_Password", form1.txtPassword.text.get());
}

}  // namespace twk::session
