#include "windows/preferences_tab.hpp"

#include "session/settings.hpp"
#include "windows/read_settings.hpp"
#include "windows/setting_controls.hpp"
#include "windows/state/form1.hpp"

namespace twk::windows {

void USR_Cant_Change_Click(Desktop& session) {
  Form1& form1 = session.form1;
  const bool fixed = form1.USR_Cant_Change.on();
  store_box(session, form1.USR_Cant_Change);
  form1.Password_Change.enabled = !fixed;
  if (fixed) {
    form1.Password_Change.value = 0;
    store_box(session, form1.Password_Change);
  }
}

void STOP_ON_RED_Click(Desktop& session) {
  auto& [on_errors, on_warnings, skip_prompt] = session.form1.STOP_ON_RED;
  if (on_warnings.on())
    on_errors.value = 1;
  on_errors.enabled = !on_warnings.on();
  for (const controls::CheckBox* const box : {&on_errors, &on_warnings, &skip_prompt})
    store_box(session, *box);
}

void Mail_Logon_Click(Desktop& session) {
  show_mail_credentials(session);
}

void savemail_Click(Desktop& session) {
  const Form1& form1 = session.form1;
  session::write_setting(session, session::kMail, "LDAP_PORT", form1.PORT.text.get());
  session::write_setting(session, session::kMail, "MailCredentials",
                         form1.Mail_Logon.on() ? "True" : "False");
  if (form1.Mail_Logon.on())
    return;
  session::write_setting(session, session::kMail, "Admin_Account", form1.txtAdmin.text.get());
  session::write_setting(session, session::kMail, "Mail_Password", form1.txtPassword.text.get());
}

}  // namespace twk::windows
