#include "batch/account_functions.hpp"

#include <array>
#include <optional>

#include "directory/account_marks.hpp"
#include "directory/operations.hpp"
#include "format/passwords.hpp"
#include "platform/adsi.hpp"
#include "session/log_tab.hpp"
#include "session/run_scope.hpp"

namespace twk::batch {
namespace {

using session::Session;

struct Texts {
  std::string_view progress;
  std::string_view log;
};

constexpr std::array<Texts, 5> kTexts = {
    {{"Unlocking Account for ", "Account Enabled for "},
     {"Locking Account for ", "Account Disabled for "},
     {"Password now set to expire: ", "Password now set to expire: "},
     {"Password now set not to expire: ", "Password now set not to expire: "},
     {"Resetting Password for: ", "Resetting Password for: "}}};

const Texts& texts_of(AccountFunction function) {
  return kTexts.at(static_cast<std::size_t>(function));
}

void set_disabled(const platform::ObjectPtr& object, bool disabled, const RunHooks& hooks) {
  platform::User user(object);
  const bool changes = hooks.changed && user.AccountDisabled() != disabled;
  user.put_AccountDisabled(disabled);
  user.SetInfo();
  if (changes) {
    hooks.changed({disabled ? AccountChange::Kind::kDisabled : AccountChange::Kind::kEnabled,
                   platform::readable_sid(object),
                   {}});
  }
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

void keep_password(const Session& session, const platform::ObjectPtr& user, bool change_at_logon) {
  const std::int32_t flags = user->Get(flags_name(session)).integer();
  user->Put(flags_name(session), flags | platform::kFlagPasswordNeverExpires);
  if (change_at_logon) {
    if (session::is_active_directory(session))
      user->Put("pwdLastSet", 0);
    else
      user->Put("PasswordExpired", 1);
  }
  user->SetInfo();
}

/// Why it failed; none when the password was set.
std::optional<std::string> reset_password(Session& session, const std::string& default_password,
                                          const SelectedUser& user) {
  const std::string password = format::reset_user_password_text(session, default_password, user.name);
  std::string reason;
  const bool set = session::is_active_directory(session)
                       ? directory::Reset_AD_Password(session, password, user.path, &reason)
                       : directory::Reset_NT_Password(session, password, user.name, &reason);
  return set ? std::nullopt : std::optional("Error ReSetting Password for: " + user.name + ": " + reason);
}

std::optional<std::string> apply(Session& session, const AccountOrder& order, const SelectedUser& user,
                                 const RunHooks& hooks) {
  switch (order.function) {
    case AccountFunction::kEnable:
    case AccountFunction::kDisable:
      set_disabled(user.object, order.function == AccountFunction::kDisable, hooks);
      directory::set_mark(session, user.path, directory::mark::kDisabled,
                          order.function == AccountFunction::kDisable);
      break;
    case AccountFunction::kPasswordExpires:
      let_password_expire(session, user.object);
      break;
    case AccountFunction::kPasswordNeverExpires:
      keep_password(session, user.object, order.change_at_logon);
      break;
    default:
      return reset_password(session, order.default_password, user);
  }
  return std::nullopt;
}

void change_one(Session& session, const AccountOrder& order, session::RunView& view, const RunHooks& hooks,
                const SelectedUser& user) {
  const auto refusal = apply(session, order, user, hooks);
  const std::string told = std::string(texts_of(order.function).log) + user.name;
  view.step(std::string(texts_of(order.function).progress) + user.name);
  if (refusal) {
    session.platform.dialogs.beep();
  } else {
    if (order.function == AccountFunction::kResetPassword)
      session::LOG_TAB(session, session::kGreen, " " + told);
    session.log.line(told);
  }
  if (hooks.done)
    hooks.done(
        {{std::string(refusal ? session::kRed : session::kGreen), refusal.value_or(told), !refusal, {}},
         user.name,
         user.path});
}

}  // namespace

bool change_accounts(Session& session, const AccountOrder& order, session::RunView& view,
                     const RunHooks& hooks) {
  const session::RunScope scope(session, view);
  if (!session.log.is_open())
    session.log.begin_block();
  const bool whole = walk_selection(session, rules_of(session, hooks, true), [&](SelectedUser& user) {
    change_one(session, order, view, hooks, user);
  });
  session.log.close();
  return whole;
}

}  // namespace twk::batch
