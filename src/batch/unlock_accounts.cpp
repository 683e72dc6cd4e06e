#include "batch/unlock_accounts.hpp"

#include "batch/bind_account.hpp"
#include "directory/account_marks.hpp"
#include "format/passwords.hpp"
#include "platform/adsi.hpp"
#include "session/run_scope.hpp"

namespace twk::batch {
namespace {

using platform::ObjectPtr;
using session::Session;

void reset_password(Session& session, const std::string& default_password, const ObjectPtr& user,
                    const ObjectPtr& account) {
  account->SetPassword(format::reset_user_password_text(session, default_password, account->Name()));
  if (session::is_active_directory(session)) {
    // The WinNT provider does not know the attribute.
    user->Put("pwdLastSet", 0);
    user->SetInfo();
  } else {
    account->Put("PasswordExpired", 1);
  }
}

void unlock_one(Session& session, const UnlockOrder& order, const SelectedUser& user) {
  const ObjectPtr account = bind_account(session, user.object);
  platform::User(account).put_IsAccountLocked(false);
  if (order.reset)
    reset_password(session, order.default_password, user.object, account);
  account->SetInfo();
}

}  // namespace

bool unlock_accounts(Session& session, const UnlockOrder& order, session::RunView& view,
                     const RunHooks& hooks) {
  const session::RunScope scope(session, view);
  return walk_selection(session, rules_of(session, hooks, true), [&](SelectedUser& user) {
    unlock_one(session, order, user);
    directory::set_mark(session, user.path, directory::mark::kLocked, false);
    if (hooks.done)
      hooks.done({{std::string(session::kGreen), "Account Unlocked for " + user.name, true, {}},
                  user.name,
                  user.path});
  });
}

}  // namespace twk::batch
