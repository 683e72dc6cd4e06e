#include "batch/change_groups.hpp"

#include <cstdint>
#include <set>

#include "base/error_words.hpp"
#include "base/errors.hpp"
#include "base/text.hpp"
#include "directory/names.hpp"
#include "directory/operations.hpp"
#include "platform/adsi.hpp"
#include "platform/ldap_text.hpp"
#include "session/run_scope.hpp"

namespace twk::batch {
namespace {

using platform::ObjectPtr;
using session::Session;

struct BoundGroup {
  const groups::GroupRow& row;
  ObjectPtr object;
  std::string identity;  ///< its distinguished name in capitals, in a WinNT domain its name
  std::int32_t rid = 0;
};

std::string path_of(const Session& session, const SelectedUser& user) {
  return session::is_active_directory(session) ? user.path : directory::winnt_path(session, user.name);
}

std::vector<BoundGroup> bind_groups(Session& session, const std::vector<groups::GroupRow>& rows) {
  const bool active_directory = session::is_active_directory(session);
  std::vector<BoundGroup> bound;
  bound.reserve(rows.size());
  for (const groups::GroupRow& row : rows) {
    bound.push_back({row, groups::bind_group(session, row),
                     base::upper(active_directory ? directory::name_in_path(row.key) : row.name),
                     directory::Group_RID(session, active_directory ? row.key : row.name)});
  }
  return bound;
}

/// What is known of a user before the first change: one look-up, however many groups there are.
struct Memberships {
  std::set<std::string> groups;  ///< their identities, the primary one excepted
  std::int32_t primary = 0;
};

Memberships read_memberships(const Session& session, const ObjectPtr& user) {
  Memberships known;
  known.primary = platform::value_or_empty(*user, "primaryGroupID").integer();
  if (session::is_active_directory(session)) {
    for (const platform::Value& group : platform::value_or_empty(*user, "memberOf").list())
      known.groups.insert(base::upper(group.text()));
    return known;
  }
  for (const ObjectPtr& group : user->Groups())
    known.groups.insert(base::upper(group->Name()));
  return known;
}

/// The changes of one user.
class UserGroups {
 public:
  UserGroups(Session& session, const SelectedUser& user, const RunHooks& hooks)
      : session_(session), user_(user), hooks_(hooks), known_(read_memberships(session, user.object)) {
    if (hooks.changed)
      sid_ = platform::readable_sid(user.object);
  }

  void join(const BoundGroup& group) {
    if (is_primary(group) || known_.groups.contains(group.identity))
      return note("in " + group.row.name + " already");
    attempt(group, AccountChange::Kind::kJoined, "added to ", "not added to ",
            [&] { group.object->Add(path_of(session_, user_)); });
  }
  void leave(const BoundGroup& group) {
    if (is_primary(group)) {
      return refuse(group.row.name +
                    " is the primary group, which no account can leave: make another group the primary one "
                    "first");
    }
    if (!known_.groups.contains(group.identity))
      return note("not in " + group.row.name);
    attempt(group, AccountChange::Kind::kLeft, "removed from ", "not removed from ",
            [&] { group.object->Remove(path_of(session_, user_)); });
  }
  [[nodiscard]] session::RunOutcome outcome() const {
    session::RunOutcome outcome;
    outcome.done = refused_.empty() || noted_;
    outcome.light = refused_.empty() ? session::kGreen : noted_ ? session::kYellow : session::kRed;
    outcome.message = user_.name + ": " + told_;
    outcome.warnings = refused_;
    return outcome;
  }

 private:
  [[nodiscard]] bool is_primary(const BoundGroup& group) const {
    return group.rid != 0 && group.rid == known_.primary;
  }
  template <typename Step>
  void attempt(const BoundGroup& group, AccountChange::Kind kind, const std::string& done,
               const std::string& not_done, Step step) {
    base::Trap trap;
    if (!trap(step)) {
      return refuse(not_done + group.row.name + ": " + base::in_words(trap.number(), trap.description()));
    }
    note(done + group.row.name);
    if (hooks_.changed)
      hooks_.changed({kind, sid_, group.object->ADsPath()});
  }
  void note(const std::string& text) {
    noted_ = true;
    tell(text);
  }
  void refuse(const std::string& text) {
    refused_.push_back(text);
    tell(text);
  }
  void tell(const std::string& text) { told_ += (told_.empty() ? "" : "; ") + text; }

  Session& session_;
  const SelectedUser& user_;
  const RunHooks& hooks_;
  Memberships known_;
  std::string sid_;
  std::string told_;
  bool noted_ = false;
  std::vector<std::string> refused_;
};

}  // namespace

bool change_groups(Session& session, const GroupsOrder& order, session::RunView& view,
                   const RunHooks& hooks) {
  const session::RunScope scope(session, view);
  const std::vector<BoundGroup> joined = bind_groups(session, order.add);
  const std::vector<BoundGroup> left = bind_groups(session, order.remove);
  session.log.begin_block();
  const bool whole = walk_selection(session, rules_of(session, hooks, true), [&](SelectedUser& user) {
    view.step("Changing groups of " + user.name);
    UserGroups changes(session, user, hooks);
    for (const BoundGroup& group : left)
      changes.leave(group);
    for (const BoundGroup& group : joined)
      changes.join(group);
    const session::RunOutcome outcome = changes.outcome();
    session.log.line(outcome.message);
    if (hooks.done)
      hooks.done({outcome, user.name, user.path});
  });
  session.log.close();
  return whole;
}

}  // namespace twk::batch
