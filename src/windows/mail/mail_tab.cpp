#include "windows/mail/mail_tab.hpp"

#include "windows/state/form1.hpp"

namespace twk::windows {

session::MailAdministrator mail_administrator(const Form1& form) {
  return {form.txtAdmin.text, form.txtPassword.text, form.PORT.text, form.Mail_Logon.on()};
}

}  // namespace twk::windows
