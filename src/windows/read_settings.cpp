#include "windows/read_settings.hpp"

#include "base/text.hpp"
#include "directory/custom_fields.hpp"
#include "format/passwords.hpp"
#include "session/form1.hpp"
#include "session/settings.hpp"
#include "session/windows.hpp"
#include "windows/formats_tab.hpp"

namespace twk::windows {
namespace {

std::string read_trimmed(session::Session& session, std::string_view sub_key, std::string_view name) {
  return std::string(base::trim(session::read_setting(session, sub_key, name)));
}

bool is_yes(std::string_view text) {
  return text == "Yes";
}
bool is_yes_in_any_case(std::string_view text) {
  return base::equals_fold(text, "YES");
}
bool is_not_no(std::string_view text) {
  return text != "No";
}

/// A box that is ticked when the stored word meets the rule.
struct TickSetting {
  std::string_view name;
  controls::CheckBox& box;
  bool (*ticks)(std::string_view text);
};

void read_ticks(session::Session& session, std::string_view sub_key,
                std::initializer_list<TickSetting> settings) {
  for (const TickSetting& setting : settings)
    setting.box.value = setting.ticks(session::read_setting(session, sub_key, setting.name)) ? 1 : 0;
}

/// A text field that takes the value trimmed, empty when there is none.
struct TextSetting {
  std::string_view name;
  controls::TextBox& box;
};

void read_texts(session::Session& session, std::string_view sub_key,
                std::initializer_list<TextSetting> settings) {
  for (const TextSetting& setting : settings)
    setting.box.text = read_trimmed(session, sub_key, setting.name);
}

void read_texts_when_present(session::Session& session, std::string_view sub_key,
                             std::initializer_list<TextSetting> settings) {
  for (const TextSetting& setting : settings) {
    const std::string value = read_trimmed(session, sub_key, setting.name);
    if (session.LastRegResult)
      setting.box.text = value;
  }
}

/// The entry that a stored number, counted from 1, selects.
int read_entry(session::Session& session, std::string_view sub_key, std::string_view name, int entries,
               int otherwise) {
  const int number = base::to_number(session::read_setting(session, sub_key, name)).value_or(0);
  return number >= 1 && number <= entries ? number - 1 : otherwise;
}

void read_data_version(session::Session& session) {
  session::read_setting(session, session::kVersion, "DBVersion");
  if (!session.LastRegResult)
    session::write_setting(session, session::kVersion, "DBVersion", session::kDataVersion);
}

void read_database_path(session::Session& session) {
  std::string path = read_trimmed(session, session::kSetup, "DataBasePath");
  if (path.empty())
    path = session.program_directory;
  if (!path.ends_with('\\'))
    path += '\\';
  session.dbpath = path;
  session.form1.dbpath.text = path;
}

void read_managed_ou(session::Session& session) {
  std::uint32_t hive = platform::kHiveLocalMachine;
  session.ManagedOU = session::read_setting(session, session::kSetup, "OU", hive);
  // A limit that was lifted leaves an empty text, which must not hide the person's own.
  if (!session.LastRegResult || session.ManagedOU.empty()) {
    hive = platform::kHiveCurrentUser;
    session.ManagedOU = session::read_setting(session, session::kSetup, "OU", hive);
  }
  session.ManageSubOUs = session::read_setting(session, session::kSetup, "SUBOU", hive) != "No";
}

void read_setup(session::Session& session) {
  session::Form1& form1 = session.form1;
  session.DomainName = session::read_setting(session, session::kSetup, "Domain");
  form1.DomName.text = session.DomainName;
  read_texts(session, session::kSetup, {{"Password", form1.defaultpassword}});
  read_database_path(session);
  session.ProfileTemplateFile = read_trimmed(session, session::kSetup, "Profiles");
  if (session.ProfileTemplateFile.empty())
    session.ProfileTemplateFile = "NTUser.dat";
  read_texts_when_present(session, session::kSetup, {{"BatchFileCreate", form1.Create_Script}});
  read_texts(session, session::kSetup,
             {{"BatchFileMove", form1.Move_Script}, {"BatchFileDelete", form1.Delete_Script}});
  form1.setupid.text = session::read_setting(session, session::kSetup, "SetupID");
  form1.ALTID.text = session::read_setting(session, session::kSetup, "AltSetupID");
  form1.Option1.index = read_entry(session, session::kSetup, "UserFormat", 5, 2);
  session.import_grps.Expiredate.text = session::read_setting(session, session::kSetup, "AccountExpire");
  read_managed_ou(session);
  read_ticks(session, session::kSetup,
             {{"CreateHidden", form1.Run_Hidden[0], is_yes},
              {"MoveHidden", form1.Run_Hidden[1], is_yes},
              {"DeleteHidden", form1.Run_Hidden[2], is_yes},
              {"WaitNew", form1.Wait_NEW[0], is_yes},
              {"WaitMove", form1.Wait_NEW[1], is_yes},
              {"WaitDelete", form1.Wait_NEW[2], is_yes}});
}

void read_preferences(session::Session& session) {
  session::Form1& form1 = session.form1;
  read_ticks(session, session::kPreferences, {{"UseFormattedPassword", form1.FmtPass, is_yes_in_any_case}});
  if (form1.FmtPass.on())
    read_texts(session, session::kSetup, {{"FormattedPassword", form1.Formatted_Password}});
  form1.FN_Format.text = session::read_setting(session, session::kPreferences, "Custom_FN");
  controls::choose(form1.SamAccountName, form1.CNName,
                   base::equals_fold(session::read_setting(session, session::kPreferences, "CNName"), "NO"));
  read_ticks(session, session::kPreferences,
             {{"CantChangePWD", form1.USR_Cant_Change, is_yes_in_any_case},
              {"PasswdNVRExpire", form1.PWD_NVR_EXPIRE, is_yes_in_any_case},
              {"ProfileDeleteUsername", form1.Profile_Delete_Name, is_yes_in_any_case}});
  form1.FullName_Format.index = read_entry(session, session::kPreferences, "FullName", 4, 0);
  read_ticks(session, session::kPreferences,
             {{"ConfirmDeletes", form1.Confirm_Deletes, is_not_no},
              {"AdminShares", form1.chkAdmin_Shares, is_not_no},
              {"ConfirmResets", form1.Confirm_Resets, is_not_no},
              {"CheckAdminRights", form1.Domain_Admin, is_yes},
              {"AccountDisabled", form1.New_Disabled, is_yes},
              {"ForcePasswdChange", form1.Password_Change, is_yes},
              {"SkipPrompt", form1.STOP_ON_RED[2], is_yes},
              {"StopOnWarning", form1.STOP_ON_RED[1], is_yes},
              {"StopOnError", form1.STOP_ON_RED[0], is_yes}});
  // Nobody can be told to change a password that he must not change.
  if (form1.USR_Cant_Change.on())
    form1.Password_Change.value = 0;
  form1.Password_Change.enabled = !form1.USR_Cant_Change.on();
  form1.STOP_ON_RED[0].enabled = !form1.STOP_ON_RED[1].on();
  controls::choose(form1.Sorted_Yes, form1.Sorted_No,
                   is_yes(session::read_setting(session, session::kPreferences, "Sorted")));
  controls::choose(form1.DisplayName, form1.DNName,
                   is_yes(session::read_setting(session, session::kPreferences, "DisplayName")));
}

void read_stages(session::Session& session) {
  session::Form1& form1 = session.form1;
  const std::initializer_list<std::pair<std::string_view, controls::CheckBox&>> stages = {
      {"CreateDirs", form1.Create_Dirs},          {"CreateShares", form1.Create_Shares},
      {"SetPermissions", form1.Dir_Security},     {"UserAccount", form1.Create_User_Account},
      {"MailAccount", form1.Create_Mail_Account}, {"RunCmd", form1.Run_script}};
  for (const auto& [name, box] : stages) {
    const std::string word = session::read_setting(session, session::kUM, name);
    box.value = !session.LastRegResult || is_yes(word) ? 1 : 0;
  }
}

void read_mail(session::Session& session) {
  session::Form1& form1 = session.form1;
  read_texts_when_present(
      session, session::kMail,
      {{"LDAP_PORT", form1.PORT}, {"Admin_Account", form1.txtAdmin}, {"Mail_Password", form1.txtPassword}});
  const std::string current_credentials = read_trimmed(session, session::kMail, "MailCredentials");
  form1.Mail_Logon.value = base::equals_fold(current_credentials, "FALSE") ? 0 : 1;
}

/// One of the two commands that an administrator may add to the tree's popup menu.
bool show_custom_command(session::Session& session, std::string_view suffix, controls::MenuItem& item) {
  bool complete = true;
  const auto read = [&](std::string_view name) {
    std::string value =
        session::read_setting(session, session::kCustom, std::string(name) + std::string(suffix));
    complete = complete && session.LastRegResult;
    return value;
  };
  const std::string menu = read("Menu");
  const std::string script = read("Script");
  read("RUNHIDDEN");
  const bool shown = complete && !menu.empty() && !script.empty();
  if (shown)
    item.caption = menu;
  item.visible = shown;
  item.enabled = shown;
  return shown;
}

void show_custom_commands(session::Session& session) {
  auto& menu = session.form1.mnupopup;
  const bool first = show_custom_command(session, "", menu[13]);
  const bool second = show_custom_command(session, "1", menu[14]);
  menu[12].visible = first || second;
  menu[12].enabled = first || second;
}

}  // namespace

void show_mail_credentials(session::Session& session) {
  const bool own = !session.form1.Mail_Logon.on();
  for (controls::TextBox* const box : {&session.form1.txtAdmin, &session.form1.txtPassword}) {
    box->enabled = own;
    box->paint = own ? controls::Paint::kEditing : controls::Paint::kDefault;
  }
}

void read_settings(session::Session& session) {
  session::Form1& form1 = session.form1;
  read_data_version(session);
  read_setup(session);
  read_preferences(session);
  read_stages(session);
  read_mail(session);
  session.LoadAllUsersFlag =
      base::equals_fold(session::read_setting(session, session::kADO, "LoadAllUsers"), "TRUE");
  if (session.DomainName.empty())
    session.DomainName = session::kNoDomain;

  apply_presets(session);
  Check_Name_Format_Click(session);
  Check_FN_Format_Click(session);
  form1.FN_Format_Check.paint = controls::Paint::kDefault;
  form1.testuserid.paint = controls::Paint::kDefault;
  form1.Import_Text.paint = controls::Paint::kDefault;
  show_mail_credentials(session);
  show_custom_commands(session);
  format::show_password_frame(session);
  directory::show_custom_fields(session);
  Check_Name_Format_Click(session);
}

}  // namespace twk::windows
