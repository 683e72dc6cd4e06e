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
           {kPreferences, "UseFormattedPassword", form.FmtPass},
           {kPreferences, "CantChangePWD", form.USR_Cant_Change},
           {kPreferences, "PasswdNVRExpire", form.PWD_NVR_EXPIRE},
           {kPreferences, "ProfileDeleteUsername", form.Profile_Delete_Name},
           {kPreferences, "ConfirmDeletes", form.Confirm_Deletes},
           {kPreferences, "AdminShares", form.chkAdmin_Shares},
           {kPreferences, "ConfirmResets", form.Confirm_Resets},
           {kPreferences, "CheckAdminRights", form.Domain_Admin},
           {kPreferences, "AccountDisabled", form.New_Disabled},
           {kPreferences, "ForcePasswdChange", form.Password_Change},
           {kPreferences, "StopOnError", on_errors},
           {kPreferences, "StopOnWarning", on_warnings},
           {kPreferences, "SkipPrompt", skip_prompt}}};
}

std::array<SettingBox, 6> command_boxes(Form1& form) {
  return {{{kSetup, "CreateHidden", form.Run_Hidden[0]},
           {kSetup, "MoveHidden", form.Run_Hidden[1]},
           {kSetup, "DeleteHidden", form.Run_Hidden[2]},
           {kSetup, "WaitNew", form.Wait_NEW[0]},
           {kSetup, "WaitMove", form.Wait_NEW[1]},
           {kSetup, "WaitDelete", form.Wait_NEW[2]}}};
}

std::array<SettingPair, 3> setting_pairs(Form1& form) {
  return {{{"CNName", form.CNName, form.SamAccountName},
           {"Sorted", form.Sorted_Yes, form.Sorted_No},
           {"DisplayName", form.DisplayName, form.DNName}}};
}

std::array<SettingField, 7> setting_fields(Form1& form) {
  return {{{kSetup, "Password", form.defaultpassword},
           {kSetup, "BatchFileCreate", form.Create_Script, Absent::kLeaves},
           {kSetup, "BatchFileMove", form.Move_Script},
           {kSetup, "BatchFileDelete", form.Delete_Script},
           {kMail, "LDAP_PORT", form.PORT, Absent::kLeaves},
           {kMail, "Admin_Account", form.txtAdmin, Absent::kLeaves},
           {kMail, "Mail_Password", form.txtPassword, Absent::kLeaves}}};
}

void read_setting_controls(Desktop& session) {
  const auto read = [&](const SettingBox& row) {
    row.box.value = session::read_switch(session, row.sub_key, row.name) ? 1 : 0;
  };
  std::ranges::for_each(setting_boxes(session.form1), read);
  std::ranges::for_each(command_boxes(session.form1), read);
  for (const SettingPair& pair : setting_pairs(session.form1))
    controls::choose(pair.on, pair.off, session::read_switch(session, kPreferences, pair.name));
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
    session::write_yes_no(session, kPreferences, pair.name, pair.on.value);
  }
}

}  // namespace twk::windows
