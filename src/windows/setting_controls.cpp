#include "windows/setting_controls.hpp"

#include <algorithm>

#include "base/text.hpp"
#include "session/settings.hpp"
#include "session/settings_schema.hpp"
#include "windows/state/desktop.hpp"
#include "windows/state/form1.hpp"

namespace twk::windows {

using session::kMail;
using session::kPreferences;
using session::kSetup;
using session::kUM;

std::array<SettingBox, 19> setting_boxes(Form1& form) {
  auto& [on_errors, on_warnings, skip_prompt] = form.STOP_ON_RED;
  return {{{kUM, "CreateDirs", form.Create_Dirs},
           {kUM, "CreateShares", form.Create_Shares},
           {kUM, "SetPermissions", form.Dir_Security},
           {kUM, "UserAccount", form.Create_User_Account},
           {kUM, "MailAccount", form.Create_Mail_Account},
           {kUM, "RunCmd", form.Run_script},
           {session::kPreferences, "UseFormattedPassword", form.FmtPass},
           {session::kPreferences, "CantChangePWD", form.USR_Cant_Change},
           {session::kPreferences, "PasswdNVRExpire", form.PWD_NVR_EXPIRE},
           {session::kPreferences, "ProfileDeleteUsername", form.Profile_Delete_Name},
           {session::kPreferences, "ConfirmDeletes", form.Confirm_Deletes},
           {session::kPreferences, "AdminShares", form.chkAdmin_Shares},
           {session::kPreferences, "ConfirmResets", form.Confirm_Resets},
           {session::kPreferences, "CheckAdminRights", form.Domain_Admin},
           {session::kPreferences, "AccountDisabled", form.New_Disabled},
           {session::kPreferences, "ForcePasswdChange", form.Password_Change},
           {session::kPreferences, "StopOnError", on_errors},
           {session::kPreferences, "StopOnWarning", on_warnings},
           {session::kPreferences, "SkipPrompt", skip_prompt}}};
}

std::array<SettingBox, 6> command_boxes(Form1& form) {
  return {{{session::kSetup, "CreateHidden", form.Run_Hidden[0]},
           {session::kSetup, "MoveHidden", form.Run_Hidden[1]},
           {session::kSetup, "DeleteHidden", form.Run_Hidden[2]},
           {session::kSetup, "WaitNew", form.Wait_NEW[0]},
           {session::kSetup, "WaitMove", form.Wait_NEW[1]},
           {session::kSetup, "WaitDelete", form.Wait_NEW[2]}}};
}

std::array<SettingPair, 3> setting_pairs(Form1& form) {
  return {{{"CNName", form.CNName, form.SamAccountName},
           {"Sorted", form.Sorted_Yes, form.Sorted_No},
           {"DisplayName", form.DisplayName, form.DNName}}};
}

std::array<SettingField, 7> setting_fields(Form1& form) {
  return {{{session::kSetup, "Password", form.defaultpassword},
           {session::kSetup, "BatchFileCreate", form.Create_Script, Absent::kLeaves},
           {session::kSetup, "BatchFileMove", form.Move_Script},
           {session::kSetup, "BatchFileDelete", form.Delete_Script},
           {session::kMail, "LDAP_PORT", form.PORT, Absent::kLeaves},
           {session::kMail, "Admin_Account", form.txtAdmin, Absent::kLeaves},
           {session::kMail, "Mail_Password", form.txtPassword, Absent::kLeaves}}};
}

void read_setting_controls(Desktop& session) {
  const auto read = [&](const SettingBox& row) {
    row.box.value = session::read_switch(session, row.sub_key, row.name) ? 1 : 0;
  };
  std::ranges::for_each(setting_boxes(session.form1), read);
  std::ranges::for_each(command_boxes(session.form1), read);
  for (const SettingPair& pair : setting_pairs(session.form1))
    controls::choose(pair.on, pair.off, session::read_switch(session, session::kPreferences, pair.name));
  for (const SettingField& row : setting_fields(session.form1)) {
    const std::string text = session::read_setting(session, row.sub_key, row.name);
    if (session.LastRegResult || row.absent == Absent::kEmpties)
      row.field.text = std::string(base::trim(text));
  }
}

void store_box(Desktop& session, const controls::CheckBox& box) {
  for (const SettingBox& row : setting_boxes(session.form1)) {
    if (&row.box == &box)
      session::write_yes_no(session, row.sub_key, row.name, box.on());
  }
}

void choose_option(Desktop& session, const controls::OptionButton& button) {
  for (const SettingPair& pair : setting_pairs(session.form1)) {
    if (&pair.on != &button && &pair.off != &button)
      continue;
    controls::choose(pair.on, pair.off, &pair.on == &button);
    session::write_yes_no(session, session::kPreferences, pair.name, pair.on.value);
  }
}

}  // namespace twk::windows
