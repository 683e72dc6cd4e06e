#include "windows/multi_user/accounts_tab.hpp"

#include <array>

#include "base/errors.hpp"
#include "base/text.hpp"
#include "batch/account_functions.hpp"
#include "batch/find_accounts.hpp"
#include "batch/unlock_accounts.hpp"
#include "platform/adsi.hpp"
#include "session/run_scope.hpp"
#include "windows/multi_user/run_preview.hpp"
#include "windows/multi_user/run_watch.hpp"
#include "windows/multi_user/run_window.hpp"
#include "windows/state/form1.hpp"
#include "windows/state/hourglass.hpp"
#include "windows/state/run_preview.hpp"

namespace twk::windows {
namespace {

using batch::AccountFunction;
using platform::ObjectPtr;

constexpr std::array<std::string_view, 5> kConfirmations = {
    "This will enable all selected accounts", "This will disable all selected accounts",
    "This will set the password to expire on all selected accounts",
    "This will set the password not to expire on all selected accounts",
    "This will reset the passwords on the selected accounts"};

bool is_confirmed(Desktop& session, AccountFunction function) {
  const std::string text(kConfirmations.at(static_cast<std::size_t>(function)));
  // The preview bears the question itself.
  if (session.run_preview.asks)
    return is_run_wanted(session, {"Modify Accounts", text + "\nPress 'OK' to continue", "OK"});
  return session.platform.dialogs.MsgBox(text + "\r\nPress 'OK' to continue", platform::Buttons::kOkCancel,
                                         platform::Icon::kQuestion,
                                         "Modify Accounts") == platform::Answer::kOk;
}

void change(Desktop& session, AccountFunction function) {
  MultiUser& window = session.multi_user;
  window.Unlock_Stage = false;
  if (lacks_selection(session))
    return;
  session.log.begin_block();
  if (!is_confirmed(session, function))
    return session.log.close();
  const Hourglass hourglass(window.mouse_pointer);
  const RunningWindow running(session, window.btnGo,
                              {&window.Command7.enabled, &window.DELIMPORT.enabled, &window.Command1.enabled,
                               &window.Command2.enabled, &window.LockAcc.enabled});
  MultiUserView view(session, window.btnGo);
  const session::RunScope scope(session, {}, view);
  RunWatch watch(session, btnGo_Click);
  const batch::RunHooks hooks = watch.hooks();
  try {
    const bool whole = batch::change_accounts(
        session, {function, window.ctrChangePswd.on(), session.form1.defaultpassword.text}, view, hooks);
    view.step(whole ? " Completed" : "Canceled by user.");
  } catch (const base::RuntimeError& failure) {
    batch::tell_run_failure(session, "Error Retrieving Domain Info.", failure);
  }
  watch.log(function == AccountFunction::kDisable ? "Disabled" : "Enabled");
}

RunningWindow begin_search(Desktop& session) {
  MultiUser& window = session.multi_user;
  window.Label3.caption = std::string("Please wait searching accounts.... ");
  window.ProgressBar1.value = 0;
  return RunningWindow(session, window.btnGo,
                       {&window.Command7.enabled, &window.DELIMPORT.enabled, &window.Command1.enabled,
                        &window.Command2.enabled, &window.btn_Showusers.enabled, &window.LockAcc.enabled});
}

void find_expired(Desktop& session, session::RunView& view) {
  const auto limit = base::parse_date(base::trim(session.multi_user.Expiredate.text.get()));
  const RunningWindow running = begin_search(session);
  std::size_t found = 0;
  const bool whole = batch::find_accounts(
      session,
      [&](const ObjectPtr& account) { return limit && batch::expires_before(session, account, *limit); },
      view, found);
  view.step(whole ? "Total Expired Accounts: " + std::to_string(found) : "Find canceled by user.");
}

void search_locked(Desktop& session, session::RunView& view) {
  std::size_t found = 0;
  const bool whole = batch::find_accounts(
      session, [](const ObjectPtr& account) { return platform::User(account).IsAccountLocked(); }, view,
      found);
  if (whole)
    session.multi_user.Unlock_Stage = true;
  view.step(whole ? "Press 'G0' again to unlock selected accounts."
                  : "Find canceled by user. Press 'G0' again to unlock selected accounts.");
}

void unlock_selection(Desktop& session, session::RunView& view) {
  MultiUser& window = session.multi_user;
  view.step("Unlocking accounts...");
  const bool whole =
      batch::unlock_accounts(session, {window.Unlock_Reset.on(), session.form1.defaultpassword.text}, view);
  view.step(whole ? "Accounts Unlocked." : "Canceled by user.");
  window.Unlock_Stage = !whole;
}

bool is_unlocking_wanted(Desktop& session) {
  return is_run_wanted(session, {"Modify Accounts",
                                 session.multi_user.Unlock_Reset.on()
                                     ? "Unlock the selected accounts and reset their passwords."
                                     : "Unlock the selected accounts.",
                                 "&Unlock"});
}

void find_locked(Desktop& session, session::RunView& view) {
  MultiUser& window = session.multi_user;
  if (window.Unlock_Stage && window.ListView1.empty()) {
    window.Unlock_Stage = false;
    return;
  }
  if (window.Unlock_Stage && (lacks_selection(session) || !is_unlocking_wanted(session)))
    return;
  const RunningWindow running = begin_search(session);
  window.Unlock_Stage ? unlock_selection(session, view) : search_locked(session, view);
}

void search(Desktop& session, int function) {
  MultiUser& window = session.multi_user;
  MultiUserView view(session, window.btnGo);
  const session::RunScope scope(session, {}, view);
  window.ProgressBar1_visible = true;
  try {
    function == lock_acc::kFindExpired ? find_expired(session, view) : find_locked(session, view);
  } catch (const base::RuntimeError& failure) {
    batch::tell_run_failure(session, "Error Retrieving Domain Info.", failure);
  }
  window.ProgressBar1_visible = false;
}

}  // namespace

void btnGo_Click(Desktop& session) {
  MultiUser& window = session.multi_user;
  const int chosen = window.LockAcc.index;
  const int function = chosen < 0 || chosen > lock_acc::kFindLocked ? 0 : chosen;
  if (window.btnGo.caption == std::string(kCancelCaption)) {
    window.btnGo.caption = std::string("&Go");
    window.Unlock_Stage = window.Unlock_Stage || function == lock_acc::kFindLocked;
  } else if (!is_running(window)) {
    function >= lock_acc::kFindExpired ? search(session, function)
                                       : change(session, static_cast<AccountFunction>(function));
  }
}

}  // namespace twk::windows
