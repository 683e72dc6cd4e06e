#include "windows/multi_user/delete_options.hpp"

#include "base/text.hpp"
#include "session/settings.hpp"
#include "windows/state/desktop.hpp"
#include "windows/state/multi_user.hpp"

namespace twk::windows {
namespace {

void read(Desktop& session, std::string_view name, controls::CheckBox& box) {
  box.value = base::equals_fold(session::read_setting(session, session::kDU, name), "Yes") ? 1 : 0;
}

void store(Desktop& session, std::string_view name, const controls::CheckBox& box) {
  session::write_yes_no(session, session::kDU, name, box.on());
}

void warn(Desktop& session, const controls::CheckBox& box) {
  if (!box.on())
    return;
  session.platform.dialogs.MsgBox(
      "This Over rides the preferences setting. Be careful using\r\nthis option as TWK will not prompt when "
      "deleting user directories.\r\n\r\nOnly use this setting if you are sure the Usermanger settings are "
      "correct for all users.\r\nMake sure you have a current backup.",
      platform::Buttons::kOk, platform::Icon::kExclamation, "Warning");
}

}  // namespace

void show_delete_options(Desktop& session) {
  MultiUser& window = session.multi_user;
  const bool data = window.Delete_Data.on();
  window.Del_Permissions.enabled = data;
  window.Del_Shares.enabled = !data;
  if (data)
    window.Del_Shares.value = 1;
  else
    window.Del_Permissions.value = 0;
  window.EX_Server.enabled = window.Delete_Mail.on();
}

void read_delete_options(Desktop& session) {
  MultiUser& window = session.multi_user;
  read(session, "DeleteNT", window.Delete_NT_Account);
  read(session, "DeleteData", window.Delete_Data);
  read(session, "DeleteMail", window.Delete_Mail);
  read(session, "TakeOwnership", window.Del_Permissions);
  read(session, "Runcmd", window.Run_command);
  read(session, "DeleteShares", window.Del_Shares);
  show_delete_options(session);
}

void Del_Shares_Click(Desktop& session) {
  store(session, "DeleteShares", session.multi_user.Del_Shares);
}

void Del_Permissions_Click(Desktop& session) {
  store(session, "TakeOwnership", session.multi_user.Del_Permissions);
}

void Delete_NT_Account_Click(Desktop& session) {
  store(session, "DeleteNT", session.multi_user.Delete_NT_Account);
}

void Delete_Data_Click(Desktop& session) {
  show_delete_options(session);
  store(session, "DeleteData", session.multi_user.Delete_Data);
}

void Delete_Mail_Click(Desktop& session) {
  show_delete_options(session);
  store(session, "DeleteMail", session.multi_user.Delete_Mail);
}

void Run_command_Click(Desktop& session) {
  store(session, "Runcmd", session.multi_user.Run_command);
}

void No_Prompting_Click(Desktop& session) {
  warn(session, session.multi_user.No_Prompting);
}

void No_Prompt_Click(Desktop& session) {
  warn(session, session.multi_user.No_Prompt);
}

}  // namespace twk::windows
