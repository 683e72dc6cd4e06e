#include "windows/setup_tab.hpp"

#include "base/text.hpp"
#include "session/settings.hpp"
#include "windows/formats_tab.hpp"
#include "windows/setting_controls.hpp"
#include "windows/state/form1.hpp"

namespace twk::windows {
namespace {

/// Returns the path trimmed, with a backslash at its end; an empty one stays empty.
std::string completed_path(std::string_view typed) {
  std::string path(base::trim(typed));
  if (!path.empty() && !path.ends_with('\\'))
    path += '\\';
  return path;
}

}  // namespace

void Command3_Click(Desktop& session) {
  Form1& form1 = session.form1;
  form1.dbpath.text = completed_path(form1.dbpath.text.get());
  // An empty path falls back to the default at the next start.
  if (!form1.dbpath.text.get().empty())
    session.dbpath = form1.dbpath.text;
  Check_Name_Format_Click(session);

  const std::initializer_list<std::pair<std::string_view, const std::string&>> texts = {
      {"Domain", form1.DomName.text.get()},
      {"Password", form1.defaultpassword.text.get()},
      {"FormattedPassword", form1.Formatted_Password.text.get()},
      {"DataBasePath", form1.dbpath.text.get()},
      {"SetupID", form1.setupid.text.get()},
      {"AltSetupID", form1.ALTID.text.get()},
      {"BatchFileCreate", form1.Create_Script.text.get()},
      {"BatchFileMove", form1.Move_Script.text.get()},
      {"BatchFileDelete", form1.Delete_Script.text.get()}};
  for (const auto& [name, text] : texts)
    session::write_setting(session, session::kSetup, name, text);

  keep_typed_format(session);

  for (const SettingBox& row : command_boxes(form1))
    session::write_yes_no(session, row.sub_key, row.name, row.box.on());
}

void Run_Hidden_Click(Desktop& session) {
  session::write_yes_no(session, session::kSetup, "RunHidden", session.form1.Run_Hidden[0].on());
}

}  // namespace twk::windows
