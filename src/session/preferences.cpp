#include "session/preferences.hpp"

#include "base/text.hpp"
#include "session/settings.hpp"
#include "session/settings_schema.hpp"

namespace twk::session {

Preferences read_preferences(Session& session) {
  const auto preferred = [&](std::string_view name) { return read_switch(session, kPreferences, name); };
  const auto command = [&](std::string_view text, std::string_view hidden, std::string_view wait) {
    return CommandSetting{read_setting(session, kSetup, text), read_switch(session, kSetup, hidden),
                          read_switch(session, kSetup, wait)};
  };
  const auto mail = [&](std::string_view name) {
    return std::string(base::trim(read_setting(session, kMail, name)));
  };
  return {.confirm_deletes = preferred("ConfirmDeletes"),
          .confirm_resets = preferred("ConfirmResets"),
          .through_drive_shares = preferred("AdminShares"),
          .profile_named_by_user = preferred("ProfileDeleteUsername"),
          .named_by_full_name = preferred("CNName"),
          .tree_shows_display_name = preferred("DisplayName"),
          .move_command = command("BatchFileMove", "MoveHidden", "WaitMove"),
          .delete_command = command("BatchFileDelete", "DeleteHidden", "WaitDelete"),
          .mail_administrator = {mail("Admin_Account"), mail("Mail_Password"), mail("LDAP_PORT"),
                                 read_switch(session, kMail, "MailCredentials")},
          .default_password = std::string(base::trim(read_setting(session, kSetup, "Password")))};
}

}  // namespace twk::session
