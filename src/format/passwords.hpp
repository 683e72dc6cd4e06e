#pragma once

#include <string>
#include <string_view>

namespace twk::session {
struct Session;
}

namespace twk::format {

/// The characters in reverse order. It turns a name into a password and protects nothing.
std::string Reverse_Password(std::string_view text);

/// Where the password of a new user comes from.
struct PasswordFields {
  std::string text;    ///< the default password
  std::string format;  ///< used in its place while `formatted` is set and it is not blank
  bool formatted = false;
};

/// The field that gives the password of a new user, expanded.
struct NewPasswordText {
  std::string text;
  std::string fault;  ///< why it does not match the field; empty when it does
};
/// The format or the default password with its tags expanded; "%UserName%" is the account name. A format that
/// only an import fills would give everybody else its own text as a password, so it does not count outside an
/// import.
NewPasswordText new_password_text(session::Session& session, const PasswordFields& fields,
                                  std::string_view account, std::string_view first, std::string_view middle,
                                  std::string_view last);
/// The password that such a text stands for: "%USERNAMEB%" means the user ID backwards; "PROMPT", with no
/// blank around it, asks. An empty answer is an empty password.
std::string password_of_text(session::Session& session, std::string text, std::string_view user_id);

/// The password that an existing user is reset to, from the default password: with "%UserName%" and the same
/// two words.
std::string reset_user_password_text(session::Session& session, std::string_view default_password,
                                     std::string_view name);

}  // namespace twk::format
