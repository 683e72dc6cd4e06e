#include "format/passwords.hpp"

#include "base/text.hpp"
#include "format/filling.hpp"
#include "format/replace.hpp"
#include "format/tags.hpp"
#include "session/form1.hpp"
#include "session/session.hpp"
#include "session/settings.hpp"

namespace twk::format {
namespace {

/// Widths of the frame around the passwords, in twips.
constexpr int kFrameWidth = 2775;
constexpr int kWideFrameWidth = 5535;

constexpr std::string_view kAccountTag = "%UserName%";

bool holds_import_field(std::string_view format) {
  return find_tag(format, "%IMPORT") != base::npos;
}

}  // namespace

std::string Reverse_Password(std::string_view text) {
  return base::reverse(text);
}

NewPasswordText new_password_text(session::Session& session, const PasswordFields& fields,
                                  std::string_view account, std::string_view first, std::string_view middle,
                                  std::string_view last) {
  const std::string& format = fields.format;
  const bool importing = session.import.Importing;
  const bool formatted = fields.formatted && !base::trim(format).empty();
  const bool of_import = formatted && !importing && holds_import_field(format);
  NewPasswordText password;
  if (formatted && !of_import) {
    password.text =
        Filling(session, format).tag(kAccountTag, base::trim(account)).names(first, middle, last).take();
  } else {
    Filling text(session, fields.text);
    text.tag(kAccountTag, base::trim(account));
    if (!fields.formatted)
      text.import_fields();
    const bool lacks_field = !fields.formatted && importing && text.holds("%IMPORT");
    password.text = lacks_field ? std::string() : text.take();
  }
  const std::string& field = formatted && !of_import ? format : fields.text;
  if (of_import)
    password.fault = "The default password was used: only an import fills " + format;
  else if (password.text.empty() && !base::trim(field).empty())
    password.fault = "The account has no password: " + field + " is empty";
  return password;
}

std::string password_of_text(session::Session& session, std::string text, std::string_view user_id) {
  if (base::equals_fold(base::trim(text), "%USERNAMEB%"))
    return Reverse_Password(user_id);
  if (base::equals_fold(text, "PROMPT"))
    return session.platform.dialogs.InputBox("Enter User Password:", "Enter Password", true);
  return text;
}

std::string reset_user_password_text(session::Session& session, std::string_view name) {
  return password_of_text(
      session, FRString(session.form1.defaultpassword.text.get(), kAccountTag, base::trim(name)), name);
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
