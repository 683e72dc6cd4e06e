#include "batch/account_functions.hpp"

#include <array>
#include <optional>

#include "base/errors.hpp"
#include "batch/find_accounts.hpp"
#include "batch/unlock_accounts.hpp"
#include "directory/operations.hpp"
#include "format/passwords.hpp"
#include "platform/adsi.hpp"
#include "session/hourglass.hpp"
#include "session/log_tab.hpp"
#include "session/multi_user.hpp"

namespace twk::batch {
namespace {

using session::MultiUser;
using session::Session;

struct Texts {
  std::string_view confirmation;
  std::string_view progress;
  std::string_view log;
};

constexpr std::array<Texts, 5> kTexts = {
    {{"This will enable all selected accounts", "Unlocking Account for ", "Account Enabled for "},
     {"This will disable all selected accounts", "Locking Account for ", "Account Disabled for "},
     {"This will set the password to expire on all selected accounts",
      "Password now set to expire: ", "Password now set to expire: "},
     {"This will set the password not to expire on all selected accounts",
      "Password now set not to expire: ", "Password now set not to expire: "},
     {"This will reset the passwords on the selected accounts",
      "Resetting Password for: ", "Resetting Password for: "}}};

const Texts& texts_of(AccountFunction function) {
  return kTexts.at(static_cast<std::size_t>(function));
}

void set_disabled(const platform::ObjectPtr& object, bool disabled) {
  platform::User user(object);
  user.put_AccountDisabled(disabled);
  user.SetInfo();
}

std::string_view flags_name(const Session& session) {
  return session::is_active_directory(session) ? "UserAccountControl" : "UserFlags";
}

void let_password_expire(const Session& session, const platform::ObjectPtr& user) {
  const std::int32_t flags = user->Get(flags_name(session)).integer();
  if ((flags & platform::kFlagPasswordNeverExpires) == 0)
    return;
  user->Put(flags_name(session), flags ^ platform::kFlagPasswordNeverExpires);
  user->SetInfo();
}

void keep_password(const Session& session, const platform::ObjectPtr& user) {
  const std::int32_t flags = user->Get(flags_name(session)).integer();
  user->Put(flags_name(session), flags | platform::kFlagPasswordNeverExpires);
  if (session.multi_user.ctrChangePswd.on()) {
    if (session::is_active_directory(session))
      user->Put("pwdLastSet", 0);
    else
      user->Put("PasswordExpired", 1);
  }
  user->SetInfo();
}

/// Why it failed; none when the password was set.
std::optional<std::string> reset_password(Session& session, const SelectedUser& user) {
  const std::string password = format::reset_user_password_text(session, user.name);
  std::string reason;
  const bool set = session::is_active_directory(session)
                       ? directory::Reset_AD_Password(session, password, user.path, &reason)
                       : directory::Reset_NT_Password(session, password, user.name, &reason);
  return set ? std::nullopt : std::optional("Error ReSetting Password for: " + user.name + ": " + reason);
}

std::optional<std::string> apply(Session& session, AccountFunction function, const SelectedUser& user) {
  switch (function) {
    case AccountFunction::kEnable:
    case AccountFunction::kDisable:
      set_disabled(user.object, function == AccountFunction::kDisable);
      break;
    case AccountFunction::kPasswordExpires:
      let_password_expire(session, user.object);
      break;
    case AccountFunction::kPasswordNeverExpires:
      keep_password(session, user.object);
      break;
    default:
      return reset_password(session, user);
  }
  return std::nullopt;
}

void change_one(Session& session, AccountFunction function, const RunHooks& hooks, const SelectedUser& user) {
  const auto refusal = apply(session, function, user);
  const std::string told = std::string(texts_of(function).log) + user.name;
  session.multi_user.Label3.caption = std::string(texts_of(function).progress) + user.name;
  if (refusal) {
    session.platform.dialogs.beep();
  } else {
    if (function == AccountFunction::kResetPassword)
      session::LOG_TAB(session, session::kGreen, " " + told);
    session.log.line(told);
  }
  if (hooks.done)
    hooks.done(
        {user.name, user.path, refusal ? session::kRed : session::kGreen, refusal.value_or(told), !refusal});
}

bool is_confirmed(Session& session, AccountFunction function) {
  return session.platform.dialogs.MsgBox(
             std::string(texts_of(function).confirmation) + "\r\nPress 'OK' to continue",
             platform::Buttons::kOkCancel, platform::Icon::kQuestion,
             "Modify Accounts") == platform::Answer::kOk;
}

void run(Session& session, AccountFunction function) {
  MultiUser& window = session.multi_user;
  window.Unlock_Stage = false;
  if (window.ListView1.empty())
    return;
  session.log.begin_block();
  if (!is_confirmed(session, function))
    return session.log.close();
  const session::Hourglass hourglass(window.mouse_pointer);
  const RunningWindow running(session, window.btnGo,
                              {&window.Command7.enabled, &window.DELIMPORT.enabled, &window.Command1.enabled,
                               &window.Command2.enabled, &window.LockAcc.enabled});
  const auto goes_on = [&session, &window] {
    session.platform.dialogs.DoEvents();
    return window.btnGo.caption == std::string(session::kCancelCaption);
  };
  try {
    const bool whole = change_accounts(session, function, goes_on);
    window.Label3.caption = std::string(whole ? " Completed" : "Canceled by user.");
  } catch (const base::RuntimeError& failure) {
    tell_run_failure(session, "Error Retrieving Domain Info.", failure);
  }
}

void search(Session& session, AccountFunction function) {
  session.multi_user.ProgressBar1_visible = true;
  try {
    if (function == AccountFunction::kFindExpired)
      Find_Expired_Accounts(session);
    else
      Find_Locked_Accounts(session);
  } catch (const base::RuntimeError& failure) {
    tell_run_failure(session, "Error Retrieving Domain Info.", failure);
  }
  session.multi_user.ProgressBar1_visible = false;
}

AccountFunction chosen(const MultiUser& window) {
  const int index = window.LockAcc.index;
  return index < 0 || index > static_cast<int>(AccountFunction::kFindLocked)
             ? AccountFunction::kEnable
             : static_cast<AccountFunction>(index);
}

}  // namespace

void btnGo_Click(Session& session) {
  MultiUser& window = session.multi_user;
  const AccountFunction function = chosen(window);
  const bool searches = function >= AccountFunction::kFindExpired;
  if (window.btnGo.caption == std::string(session::kCancelCaption)) {
    window.btnGo.caption = std::string("&Go");
    window.Unlock_Stage = window.Unlock_Stage || function == AccountFunction::kFindLocked;
  } else if (!session::is_running(window)) {
    searches ? search(session, function) : run(session, function);
  }
}

bool change_accounts(Session& session, AccountFunction function, const std::function<bool()>& goes_on,
                     const RunHooks& hooks) {
  if (!session.log.is_open())
    session.log.begin_block();
  const bool whole = walk_selection(session, rules_of(session, hooks, true, goes_on),
                                    [&](SelectedUser& user) { change_one(session, function, hooks, user); });
  session.log.close();
  return whole;
}

}  // namespace twk::batch
