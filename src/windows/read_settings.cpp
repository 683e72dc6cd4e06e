#include "windows/read_settings.hpp"

#include "base/text.hpp"
#include "format/presets.hpp"
#include "session/session_settings.hpp"
#include "session/settings.hpp"
#include "session/settings_schema.hpp"
#include "windows/formats_tab.hpp"
#include "windows/password_fields.hpp"
#include "windows/setting_controls.hpp"
#include "windows/state/form1.hpp"
#include "windows/state/import_windows.hpp"

namespace twk::windows {
namespace {

std::string read_trimmed(Desktop& session, std::string_view sub_key, std::string_view name) {
  return std::string(base::trim(session::read_setting(session, sub_key, name)));
}

void show_session_settings(Desktop& session) {
  Form1& form1 = session.form1;
  form1.DomName.text = session.DomainName == session::kNoDomain ? std::string() : session.DomainName;
  form1.dbpath.text = session.dbpath;
  form1.ALTID.text = session::read_setting(session, session::kSetup, "AltSetupID");
  form1.Option1.index = format::stored_account_entry(session);
  session.import_grps.Expiredate.text = session::read_setting(session, session::kSetup, "AccountExpire");
}

void read_preferences(Desktop& session) {
  Form1& form1 = session.form1;
  if (form1.FmtPass.on())
    form1.Formatted_Password.text = read_trimmed(session, session::kSetup, "FormattedPassword");
  form1.FullName_Format.index = format::stored_full_name_entry(session);
  // A person cannot be required to change a password that may not be changed.
  if (form1.USR_Cant_Change.on())
    form1.Password_Change.value = 0;
  form1.Password_Change.enabled = !form1.USR_Cant_Change.on();
  form1.STOP_ON_RED[0].enabled = !form1.STOP_ON_RED[1].on();
  form1.Mail_Logon.value = session::read_switch(session, session::kMail, "MailCredentials") ? 1 : 0;
}

/// One of the two commands that an administrator may add to the tree's popup menu.
bool show_custom_command(Desktop& session, std::string_view suffix, controls::MenuItem& item) {
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

void show_custom_commands(Desktop& session) {
  auto& menu = session.form1.mnupopup;
  const bool first = show_custom_command(session, "", menu[13]);
  const bool second = show_custom_command(session, "1", menu[14]);
  menu[12].visible = first || second;
  menu[12].enabled = first || second;
}

}  // namespace

void show_mail_credentials(Desktop& session) {
  const bool own = !session.form1.Mail_Logon.on();
  for (controls::TextBox* const box : {&session.form1.txtAdmin, &session.form1.txtPassword}) {
    box->enabled = own;
    box->paint = own ? controls::Paint::kEditing : controls::Paint::kDefault;
  }
}

void read_settings(Desktop& session) {
  Form1& form1 = session.form1;
  session::read_session_settings(session);
  read_setting_controls(session);
  show_session_settings(session);
  read_preferences(session);

  apply_presets(session);
  Check_Name_Format_Click(session);
  Check_FN_Format_Click(session);
  form1.FN_Format_Check.paint = controls::Paint::kDefault;
  form1.testuserid.paint = controls::Paint::kDefault;
  form1.Import_Text.paint = controls::Paint::kDefault;
  show_mail_credentials(session);
  show_custom_commands(session);
  show_password_frame(session);
  show_custom_fields(session);
  Check_Name_Format_Click(session);
}

}  // namespace twk::windows
