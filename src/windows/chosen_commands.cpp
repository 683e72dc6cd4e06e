#include "windows/chosen_commands.hpp"

#include "batch/account_functions.hpp"
#include "batch/move_to_unit.hpp"
#include "batch/unlock_accounts.hpp"
#include "directory/units.hpp"
#include "windows/account/popup_commands.hpp"
#include "windows/account/unsaved.hpp"
#include "windows/multi_user/chosen_users.hpp"
#include "windows/state/desktop.hpp"
#include "windows/state/form1.hpp"
#include "windows/state/tree_commands.hpp"
#include "windows/tree/unit_chooser.hpp"

namespace twk::windows {
namespace {

using batch::AccountFunction;

void change(Desktop& session, const PreviewOrder& preview, const std::string& done,
            const batch::AccountOrder& order) {
  run_over_users(session, session.tree_commands.chosen,
                 {preview, done, [&](session::RunView& view, const batch::RunHooks& hooks) {
                    return batch::change_accounts(session, order, view, hooks);
                  }});
}

}  // namespace

void Enable_Click(Desktop& session) {
  change(session, {"Enable Users", "Enable these accounts.", "&Enable"}, "Enabled",
         {AccountFunction::kEnable});
}

void Disable_Click(Desktop& session) {
  change(session, {"Disable Users", "Disable these accounts.", "&Disable"}, "Disabled",
         {AccountFunction::kDisable});
}

void Unlock_Click(Desktop& session) {
  run_over_users(session, session.tree_commands.chosen,
                 {{"Unlock Users", "Unlock these accounts.", "&Unlock"},
                  "Unlocked",
                  [&](session::RunView& view, const batch::RunHooks& hooks) {
                    return batch::unlock_accounts(session, {}, view, hooks);
                  }});
}

void Reset_Click(Desktop& session) {
  change(session,
         {"Reset Passwords", "Set the default passwords of these accounts, to be changed at the next logon.",
          "&Reset"},
         "Reset", {AccountFunction::kResetPassword, false, session.form1.defaultpassword.text});
}

void Move_To_Click(Desktop& session) {
  const std::vector<std::string> keys = session.tree_commands.chosen;
  if (keys.empty() || !may_leave_details(session))
    return;
  UnitQuestion question{"Move to OU", keys.size() == 1 ? "Move this user to:" : "Move these users to:"};
  question.with_containers = true;
  const auto unit = choose_unit(session, question);
  if (!unit)
    return;
  ChosenRun order{{"Move to OU", "Move these users to " + directory::unit_in_words(*unit) + ".", "&Move"},
                  "Moved to " + directory::unit_in_words(*unit),
                  [&](session::RunView& view, const batch::RunHooks& hooks) {
                    return batch::move_to_unit(session, *unit, view, hooks);
                  }};
  order.after = [&](const batch::UserOutcome& moved) { follow_move(session, moved.path, *unit); };
  run_over_users(session, keys, order);
}

}  // namespace twk::windows
