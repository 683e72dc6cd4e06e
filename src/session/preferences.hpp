#pragma once

#include <string>

namespace twk::session {

struct Session;

/// A command that an administrator has set for the end of an operation.
struct CommandSetting {
  std::string text;
  bool hidden = false;
  bool wait = false;
};

/// How to log on to an Exchange 5.5 server.
struct MailAdministrator {
  std::string name;
  std::string password;
  std::string port = {};  ///< of the server; empty for the usual one
  bool own_logon = true;  ///< the program's own logon counts, instead of name and password
};

/// The stored settings that operations on accounts depend on.
struct Preferences {
  bool confirm_deletes = true;
  bool confirm_resets = true;
  bool through_drive_shares = false;   ///< "D$" leads to a folder whose share is gone
  bool profile_named_by_user = false;  ///< in a WinNT domain the folder named after the user is the profile
  bool named_by_full_name = true;  ///< an entry of the directory and its folders, otherwise by the logon name
  bool tree_shows_display_name = false;
  CommandSetting move_command;
  CommandSetting delete_command;
  MailAdministrator mail_administrator;
  std::string default_password;
};

Preferences read_preferences(Session& session);

}  // namespace twk::session
