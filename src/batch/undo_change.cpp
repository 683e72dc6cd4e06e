#include "batch/undo_change.hpp"

#include <algorithm>

#include "base/error_words.hpp"
#include "base/errors.hpp"
#include "base/text.hpp"
#include "batch/account_by_sid.hpp"
#include "directory/names.hpp"
#include "platform/adsi.hpp"
#include "platform/ldap_text.hpp"

namespace twk::batch {
namespace {

using platform::ObjectPtr;
using session::Session;
using Kind = AccountChange::Kind;

bool is_in(const ObjectPtr& account, const std::string& group_path) {
  const std::string_view group = directory::name_in_path(group_path);
  const platform::ValueList groups = platform::value_or_empty(*account, "memberOf").list();
  return std::ranges::any_of(
      groups, [&](const platform::Value& one) { return base::equals_fold(one.text(), group); });
}

std::string name_of_group(const std::string& path) {
  return platform::plain_name(directory::relative_name(directory::name_in_path(path)));
}

std::string set_disabled(const ObjectPtr& account, bool disabled) {
  platform::User user(account);
  const std::string state = disabled ? "disabled" : "enabled";
  if (user.AccountDisabled() == disabled)
    return "is " + state + " already";
  user.put_AccountDisabled(disabled);
  user.SetInfo();
  return state + " again";
}

std::string set_membership(Session& session, const ObjectPtr& account, const std::string& path, bool member) {
  const std::string group = name_of_group(path);
  if (is_in(account, path) == member)
    return (member ? "is in " : "is not in ") + group + " already";
  const ObjectPtr bound = session.platform.directory.GetObject(path);
  if (member)
    bound->Add(account->ADsPath());
  else
    bound->Remove(account->ADsPath());
  return (member ? "added to " : "removed from ") + group + " again";
}

std::string move_back(Session& session, const ObjectPtr& account, const std::string& unit) {
  const std::string path = account->ADsPath();
  if (base::equals_fold(directory::name_above(directory::name_in_path(path)), unit))
    return "is in " + unit + " already";
  session.platform.directory.GetObject("LDAP://" + session.DomainName + "/" + unit)
      ->MoveHere(path, std::nullopt);
  return "moved back to " + unit;
}

std::string undo(Session& session, const ObjectPtr& account, const AccountChange& change) {
  switch (change.kind) {
    case Kind::kEnabled:
    case Kind::kDisabled:
      return set_disabled(account, change.kind == Kind::kEnabled);
    case Kind::kJoined:
    case Kind::kLeft:
      return set_membership(session, account, change.what, change.kind == Kind::kLeft);
    case Kind::kMoved:
      break;
  }
  return move_back(session, account, change.what);
}

}  // namespace

UserOutcome take_back(Session& session, const AccountChange& change) {
  UserOutcome outcome;
  outcome.user = change.sid;
  outcome.light = session::kRed;
  base::Trap trap;
  if (!trap([&] {
        if (!session::is_active_directory(session))
          base::raise(platform::ads_error::kNoSuchObject,
                      "a WinNT domain finds nobody by a security identifier");
        const ObjectPtr account = account_by_sid(session, change.sid);
        if (account == nullptr)
          base::raise(platform::ads_error::kNoSuchObject, "the account is gone");
        outcome.user = platform::plain_name(account->Name());
        outcome.path = account->ADsPath();
        session.run.user = outcome.user;
        outcome.message = outcome.user + " " + undo(session, account, change);
        outcome.light = session::kGreen;
        outcome.done = true;
      })) {
    outcome.message = outcome.user + ": " + base::in_words(trap.number(), trap.description());
  }
  session.run.user.clear();
  return outcome;
}

}  // namespace twk::batch
