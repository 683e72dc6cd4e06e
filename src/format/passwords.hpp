#pragma once

#include <string>
#include <string_view>

namespace twk::session {
struct Session;
}

namespace twk::format {

/// The characters in reverse order. It makes a password from a name and protects nothing.
std::string Reverse_Password(std::string_view text);

/// The password of a new user: `Formatted_Password` when `FmtPass` is ticked and the field is filled, else
/// `defaultpassword`, with their tags expanded; "%UserName%" is the account name. "%USERNAMEB%" means the
/// user ID backwards; "PROMPT", with no blank around it, asks. An empty answer is an empty password.
std::string new_user_password(session::Session& session, std::string_view account, std::string_view user_id,
                              std::string_view first, std::string_view middle, std::string_view last);

/// The password that an existing user is reset to: `defaultpassword`, with the same two words.
std::string reset_user_password_text(session::Session& session, std::string_view name);

/// Stores the choice and shows or hides the format of the password.
void FmtPass_Click(session::Session& session);
/// The frame around the default passwords, as `FmtPass` has it.
void show_password_frame(session::Session& session);

}  // namespace twk::format
