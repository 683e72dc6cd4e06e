#include "windows/multi_user/move_tab.hpp"

#include <array>
#include <optional>
#include "base/text.hpp"
#include "batch/move_users.hpp"
#include "batch/rehearse_selection.hpp"
#include "windows/multi_user/run_preview.hpp"
#include "windows/multi_user/run_watch.hpp"
#include "windows/multi_user/run_window.hpp"
#include "windows/state/form1.hpp"

namespace twk::windows {
namespace {

using lifecycle::MovedData;

MovedData chosen_data(const MultiUser& window) {
  switch (window.UserData.index) {
    case 0:
      return MovedData::kMove;
    case 1:
      return MovedData::kCopy;
    default:
      return MovedData::kStays;
  }
}

bool lacks_target(Desktop& session) {
  const MultiUser& window = session.multi_user;
  if (!base::trim(window.Multi_Site.text.get()).empty() &&
      !base::trim(window.Multi_Template.text.get()).empty())
    return false;
  session.platform.dialogs.MsgBox("A Site and Template must be selected before moving users",
                                  platform::Buttons::kOk, platform::Icon::kExclamation, "Move users");
  return true;
}

std::string where_to(const MultiUser& window) {
  constexpr std::array<std::string_view, 3> kData = {"left where it is", "moved with them", "copied"};
  return "Move to the site " + std::string(base::trim(window.Multi_Site.text.get())) + " and the template " +
         std::string(base::trim(window.Multi_Template.text.get())) + ". The data is " +
         std::string(kData.at(static_cast<std::size_t>(chosen_data(window)))) + ".";
}

bool is_move_wanted(Desktop& session) {
  std::optional<batch::SelectionRehearsal> rehearsal;
  const auto rehearse = [&](const batch::MeantUser& user) {
    if (!rehearsal)
      rehearsal.emplace(session, move_order(session), [&session] { return preview_goes_on(session); });
    return rehearsal->steps_of(user);
  };
  return is_run_wanted(session, {"Move Users", where_to(session.multi_user), "&Move", rehearse});
}

void run_move(Desktop& session) {
  MultiUser& window = session.multi_user;
  const RunningWindow running(
      session, window.btn_MoveUser,
      {&window.Run_CMD.enabled, &window.Command7.enabled, &window.DELIMPORT.enabled,
       &window.No_Prompt.enabled, &window.Multi_Site.enabled, &window.Multi_Template.enabled,
       &window.Add_to_Groups.enabled, &window.Change_Logon.enabled, &window.UserData.enabled,
       &window.Command1.enabled, &window.Command2.enabled});
  RunWatch watch(session, btn_MoveUser_Click);
  const batch::RunHooks hooks = watch.hooks();
  run_over_selection(session, window.btn_MoveUser, "Move Complete, Check Log for Errors",
                     [&](session::RunView& view) {
                       return batch::move_selection(session, move_order(session), view, hooks);
                     });
}

}  // namespace

lifecycle::MoveOrder move_order(const Desktop& session) {
  const MultiUser& window = session.multi_user;
  const Form1& form = session.form1;
  lifecycle::MoveOrder order;
  order.site = window.Multi_Site.text;
  order.template_name = window.Multi_Template.text;
  order.data = chosen_data(window);
  order.add_to_groups = window.Add_to_Groups.on();
  order.change_logon = window.Change_Logon.on();
  order.command = window.Run_CMD.on();
  order.through_drive_shares = form.chkAdmin_Shares.on();
  order.profile_named_by_user = form.Profile_Delete_Name.on();
  order.script = {form.Move_Script.text, form.Run_Hidden[1].on(), form.Wait_NEW[1].on()};
  order.names = {{}, form.strFirst.text, form.StrMiddle.text, form.strLast.text};
  order.terms.silent = window.No_Prompt.on();
  return order;
}

void btn_MoveUser_Click(Desktop& session) {
  MultiUser& window = session.multi_user;
  if (window.btn_MoveUser.caption == std::string(kCancelCaption))
    return stop_over_selection(session, window.btn_MoveUser, "&Move Users", "Move Canceled");
  if (is_running(window) || lacks_selection(session) || lacks_target(session) || !is_move_wanted(session))
    return;
  run_move(session);
}

}  // namespace twk::windows
