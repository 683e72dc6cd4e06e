#include "format/passwords.hpp"

#include "base/text.hpp"
#include "format/user_name.hpp"
#include "format/variables.hpp"
#include "session/session.hpp"
#include "session/settings.hpp"

namespace twk::format {
namespace {

/// Widths of the frame around the passwords, in twips.
constexpr int kFrameWidth = 2775;
constexpr int kWideFrameWidth = 5535;

std::string with_account(std::string_view text, std::string_view account) {
  return FRString(text, "%UserName%", base::trim(account));
}

/// What the two words in a password field stand for.
std::string resolve_words(session::Session& session, std::string password, std::string_view account) {
  if (base::equals_fold(base::trim(password), "%USERNAMEB%"))
    return Reverse_Password(account);
  if (base::equals_fold(password, "PROMPT"))
    return session.platform.dialogs.InputBox("Enter User Password:", "Enter Password", true);
  return password;
}

}  // namespace

std::string Reverse_Password(std::string_view text) {
  return base::reverse(text);
}

std::string new_user_password(session::Session& session, std::string_view account, std::string_view user_id,
                              std::string_view first, std::string_view middle, std::string_view last) {
  const session::Form1& form1 = session.form1;
  const std::string& format = form1.Formatted_Password.text;
  std::string password;
  if (form1.FmtPass.on() && !base::trim(format).empty()) {
    password = UserName(session, with_account(format, account), first, middle, last);
  } else {
    password = with_account(form1.defaultpassword.text.get(), account);
    if (!form1.FmtPass.on() && session.import.Importing)
      password = replace_import_fields(session, std::move(password));
  }
  return resolve_words(session, std::move(password), user_id);
}

std::string reset_user_password_text(session::Session& session, std::string_view name) {
  return resolve_words(session, with_account(session.form1.defaultpassword.text.get(), name), name);
}

void show_password_frame(session::Session& session) {
  const bool formatted = session.form1.FmtPass.on();
  session.form1.Frame4.width = formatted ? kWideFrameWidth : kFrameWidth;
  session.form1.Frame4.caption = formatted ? "Default Passwords" : "Default Password";
  session.form1.Formatted_Password.visible = formatted;
  session.form1.Formatted_Password.enabled = formatted;
}

void FmtPass_Click(session::Session& session) {
  show_password_frame(session);
  session::write_setting(session, session::kPreferences, "UseFormattedPassword",
                         session.form1.FmtPass.on() ? "YES" : "No");
}

}  // namespace twk::format
