#include "batch/undo_change.hpp"

#include <algorithm>

#include "base/error_words.hpp"
#include "base/errors.hpp"
#include "base/text.hpp"
#include "batch/account_by_sid.hpp"
#include "batch/attribute_values.hpp"
#include "batch/schema_properties.hpp"
#include "directory/names.hpp"
#include "platform/adsi.hpp"
#include "platform/ldap_text.hpp"

namespace twk::batch {
namespace {

using platform::ObjectPtr;
using session::Session;
using Kind = AccountChange::Kind;

/// What became of an account, told behind its name.
struct Undone {
  std::string text;
  bool done = true;
};

/// What somebody did since is not undone.
Undone leave_changed(const std::string& what) {
  return {what + ", which is not what the run left: it stays", false};
}

bool is_in(const Session& session, const ObjectPtr& account, const std::string& group_path) {
  if (!session::is_active_directory(session))
    return session.platform.directory.GetObject(group_path)->IsMember(account->ADsPath());
  const std::string_view group = directory::name_in_path(group_path);
  const platform::ValueList groups = platform::value_or_empty(*account, "memberOf").list();
  return std::ranges::any_of(
      groups, [&](const platform::Value& one) { return base::equals_fold(one.text(), group); });
}

std::string name_of_group(const Session& session, const std::string& path) {
  if (!session::is_active_directory(session))
    return path.substr(path.rfind('/') + 1);
  return platform::plain_name(directory::relative_name(directory::name_in_path(path)));
}

Undone set_disabled(const ObjectPtr& account, bool disabled) {
  platform::User user(account);
  const std::string state = disabled ? "disabled" : "enabled";
  if (user.AccountDisabled() == disabled)
    return {"is " + state + " already"};
  user.put_AccountDisabled(disabled);
  user.SetInfo();
  return {state + " again"};
}

Undone set_membership(Session& session, const ObjectPtr& account, const std::string& path, bool member) {
  const std::string group = name_of_group(session, path);
  if (is_in(session, account, path) == member)
    return {(member ? "is in " : "is not in ") + group + " already"};
  const ObjectPtr bound = session.platform.directory.GetObject(path);
  if (member)
    bound->Add(account->ADsPath());
  else
    bound->Remove(account->ADsPath());
  return {(member ? "added to " : "removed from ") + group + " again"};
}

Undone move_back(Session& session, const ObjectPtr& account, const AccountChange& change) {
  const std::string& unit = change.what;
  const std::string path = account->ADsPath();
  const std::string_view place = directory::name_above(directory::name_in_path(path));
  if (base::equals_fold(place, unit))
    return {"is in " + unit + " already"};
  if (!change.after.empty() && !base::equals_fold(place, change.after.front()))
    return leave_changed("the account is in " + std::string(place));
  session.platform.directory.GetObject("LDAP://" + session.DomainName + "/" + unit)
      ->MoveHere(path, std::nullopt);
  return {"moved back to " + unit};
}

std::string in_quotes(const std::vector<std::string>& values) {
  std::string text;
  for (const std::string& value : values)
    text += (text.empty() ? "\"" : ", \"") + value + "\"";
  return text.empty() ? "empty" : text;
}

/// The directory keeps values in any order.
bool are_same(std::vector<std::string> one, std::vector<std::string> other) {
  std::ranges::sort(one);
  std::ranges::sort(other);
  return one == other;
}

Undone set_back(Session& session, const ObjectPtr& account, const AccountChange& change) {
  const std::string& attribute = change.what;
  if (change.before.empty() && change.after.empty())
    return {"the former " + attribute + " is not known, because it cannot be read", false};
  const std::vector<std::string> now = read_values(account, attribute);
  if (are_same(now, change.before))
    return {"has the former " + attribute + " already"};
  if (!are_same(now, change.after))
    return leave_changed(attribute + " is " + in_quotes(now));
  stage_values(account, attribute, change.before, look_up_property(session, attribute).takes_bytes());
  account->SetInfo();
  return {"has the former " + attribute + " again: " + in_quotes(change.before)};
}

Undone undo(Session& session, const ObjectPtr& account, const AccountChange& change) {
  switch (change.kind) {
    case Kind::kEnabled:
    case Kind::kDisabled:
      return set_disabled(account, change.kind == Kind::kEnabled);
    case Kind::kJoined:
    case Kind::kLeft:
      return set_membership(session, account, change.what, change.kind == Kind::kLeft);
    case Kind::kMoved:
      return move_back(session, account, change);
    case Kind::kSet:
      break;
  }
  return set_back(session, account, change);
}

}  // namespace

UserOutcome take_back(Session& session, const AccountChange& change) {
  UserOutcome outcome;
  outcome.user = change.sid;
  outcome.light = session::kRed;
  base::Trap trap;
  if (!trap([&] {
        const ObjectPtr account = account_by_sid(session, change.sid);
        if (account == nullptr)
          base::raise(platform::ads_error::kNoSuchObject, "the account is gone");
        outcome.user = platform::plain_name(account->Name());
        outcome.path = account->ADsPath();
        session.run.user = outcome.user;
        const Undone undone = undo(session, account, change);
        outcome.message = outcome.user + (undone.done ? " " : ": ") + undone.text;
        outcome.light = undone.done ? session::kGreen : session::kRed;
        outcome.done = undone.done;
      })) {
    outcome.message = outcome.user + ": " + base::in_words(trap.number(), trap.description());
  }
  session.run.user.clear();
  return outcome;
}

}  // namespace twk::batch
