#include "format/passwords.hpp"

#include "base/text.hpp"
#include "format/filling.hpp"
#include "format/replace.hpp"
#include "format/tags.hpp"
#include "session/session.hpp"

namespace twk::format {
namespace {

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

std::string reset_user_password_text(session::Session& session, std::string_view default_password,
                                     std::string_view name) {
  return password_of_text(session, FRString(default_password, kAccountTag, base::trim(name)), name);
}

}  // namespace twk::format
