#include "windows/read_settings.hpp"

#include "base/text.hpp"
#include "directory/custom_fields.hpp"
#include "session/form1.hpp"
#include "session/settings.hpp"
#include "session/settings_schema.hpp"
#include "session/windows.hpp"
#include "windows/formats_tab.hpp"
#include "windows/password_fields.hpp"
#include "windows/setting_controls.hpp"

namespace twk::windows {
namespace {

std::string read_trimmed(session::Session& session, std::string_view sub_key, std::string_view name) {
  return std::string(base::trim(session::read_setting(session, sub_key, name)));
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
  read_database_path(session);
  session.ProfileTemplateFile = read_trimmed(session, session::kSetup, "Profiles");
  if (session.ProfileTemplateFile.empty())
    session.ProfileTemplateFile = "NTUser.dat";
  form1.setupid.text = session::read_setting(session, session::kSetup, "SetupID");
  form1.ALTID.text = session::read_setting(session, session::kSetup, "AltSetupID");
  form1.Option1.index = read_entry(session, session::kSetup, "UserFormat", 5, 2);
  session.import_grps.Expiredate.text = session::read_setting(session, session::kSetup, "AccountExpire");
  read_managed_ou(session);
}

void read_preferences(session::Session& session) {
  session::Form1& form1 = session.form1;
  if (form1.FmtPass.on())
    form1.Formatted_Password.text = read_trimmed(session, session::kSetup, "FormattedPassword");
  form1.FN_Format.text = session::read_setting(session, session::kPreferences, "Custom_FN");
  form1.FullName_Format.index = read_entry(session, session::kPreferences, "FullName", 4, 0);
  // A person cannot be required to change a password that may not be changed.
  if (form1.USR_Cant_Change.on())
    form1.Password_Change.value = 0;
  form1.Password_Change.enabled = !form1.USR_Cant_Change.on();
  form1.STOP_ON_RED[0].enabled = !form1.STOP_ON_RED[1].on();
  form1.Mail_Logon.value = session::read_switch(session, session::kMail, "MailCredentials") ? 1 : 0;
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
  read_setting_controls(session);
  read_setup(session);
  read_preferences(session);
  session.LoadAllUsersFlag = session::read_switch(session, session::kADO, "LoadAllUsers");
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
  show_password_frame(session);
  directory::show_custom_fields(session);
  Check_Name_Format_Click(session);
}

}  // namespace twk::windows
