#include "batch/delete_users.hpp"

#include "base/text.hpp"
#include "lifecycle/deletion/delete_user.hpp"
#include "session/account_windows.hpp"
#include "session/multi_user.hpp"

namespace twk::batch {
namespace {

using session::MultiUser;
using session::Session;

void cancel(Session& session) {
  session.runs.Delete_Running = false;
  stop_over_selection(session, session.multi_user.Del_User, "&Delete Users", "Delete Canceled");
}

bool lacks_server(Session& session) {
  const MultiUser& window = session.multi_user;
  if (!window.Delete_Mail.on() || !base::trim(window.EX_Server.text.get()).empty())
    return false;
  session.platform.dialogs.MsgBox("Must Select Users Exchange Server to \r\nDelete Mail Account",
                                  platform::Buttons::kOk, platform::Icon::kExclamation,
                                  "Delete Mail Account");
  return true;
}

void run(Session& session) {
  MultiUser& window = session.multi_user;
  session.runs.Delete_Mail_Flag = window.Delete_Mail.on();
  session.runs.Delete_Data_Flag = window.Delete_Data.on();
  session.runs.Run_Command_Flag = window.Run_command.on();
  const RunningWindow running(
      session, window.Del_User,
      {&window.Command7.enabled, &window.DELIMPORT.enabled, &window.Run_command.enabled,
       &window.No_Prompting.enabled, &window.EX_Server.enabled, &window.Command1.enabled,
       &window.Command2.enabled, &window.Del_Permissions.enabled, &window.Delete_Mail.enabled,
       &window.Delete_Data.enabled, &window.Delete_NT_Account.enabled, &window.Del_Shares.enabled});
  run_over_selection(session, session.runs.Delete_Running, "Delete Completed, Check log for errors",
                     [](Session& own) { return delete_selection(own); });
}

}  // namespace

void Del_User_Click(Session& session) {
  const MultiUser& window = session.multi_user;
  if (window.Del_User.caption == std::string(session::kCancelCaption))
    return cancel(session);
  if (session::is_running(window) || window.ListView1.empty() || lacks_server(session))
    return;
  run(session);
}

bool delete_selection(Session& session, const RunHooks& hooks) {
  // It returns True only for an account that is gone.
  const bool keeps_account = !session.multi_user.Delete_NT_Account.on();
  return take_selection(session, hooks, keeps_account,
                        [&session](const SelectedUser& user, const std::string& key) {
                          session.multi_user.Label3.caption = "Deleting User: " + user.name;
                          return lifecycle::Delete_One_User(session, key);
                        });
}

}  // namespace twk::batch
