#include "batch/move_users.hpp"

#include "base/text.hpp"
#include "lifecycle/move/move_user.hpp"
#include "session/account_windows.hpp"
#include "session/multi_user.hpp"

namespace twk::batch {
namespace {

using session::MultiUser;
using session::Session;

void cancel(Session& session) {
  stop_over_selection(session, session.multi_user.btn_MoveUser, "&Move Users", "Move Canceled");
}

bool lacks_target(Session& session) {
  const MultiUser& window = session.multi_user;
  if (!base::trim(window.Multi_Site.text.get()).empty() &&
      !base::trim(window.Multi_Template.text.get()).empty())
    return false;
  session.platform.dialogs.MsgBox("A Site and Template must be selected before moving users",
                                  platform::Buttons::kOk, platform::Icon::kExclamation, "Move users");
  return true;
}

void run(Session& session) {
  MultiUser& window = session.multi_user;
  session.runs.Run_Command_Flag = window.Run_CMD.on();
  const RunningWindow running(
      session, window.btn_MoveUser,
      {&window.Run_CMD.enabled, &window.Command7.enabled, &window.DELIMPORT.enabled,
       &window.No_Prompt.enabled, &window.Multi_Site.enabled, &window.Multi_Template.enabled,
       &window.Add_to_Groups.enabled, &window.Change_Logon.enabled, &window.UserData.enabled,
       &window.Command1.enabled, &window.Command2.enabled});
  run_over_selection(session, session.runs.Move_Running, "Move Complete, Check Log for Errors",
                     [](Session& own) { return move_selection(own); });
}

}  // namespace

void btn_MoveUser_Click(Session& session) {
  const MultiUser& window = session.multi_user;
  if (window.btn_MoveUser.caption == std::string(session::kCancelCaption))
    return cancel(session);
  if (session::is_running(window) || window.ListView1.empty() || lacks_target(session))
    return;
  run(session);
}

bool move_selection(Session& session, const RunHooks& hooks) {
  return take_selection(session, hooks, false,
                        [&session](const SelectedUser& /*user*/, const std::string& key) {
                          return lifecycle::Move_One_User(session, key) != lifecycle::MoveOutcome::kNotMoved;
                        });
}

}  // namespace twk::batch
