#include "batch/change_groups.hpp"

#include <algorithm>
#include <cstdint>
#include <optional>
#include <unordered_map>
#include <utility>

#include "base/error_words.hpp"
#include "base/errors.hpp"
#include "base/text.hpp"
#include "directory/names.hpp"
#include "directory/operations.hpp"
#include "groups/join_members.hpp"
#include "groups/memberships.hpp"
#include "platform/ldap_text.hpp"
#include "session/run_scope.hpp"

namespace twk::batch {
namespace {

using groups::Memberships;
using platform::ObjectPtr;
using session::Session;

struct BoundGroup {
  const groups::GroupRow& row;
  bool joins = false;  ///< the users join it, or they leave it
  ObjectPtr object;
  std::string identity;
  std::int32_t rid = 0;
};

/// Those that are left first.
std::vector<BoundGroup> bind_groups(Session& session, const GroupsOrder& order) {
  const bool active_directory = session::is_active_directory(session);
  std::vector<BoundGroup> bound;
  bound.reserve(order.remove.size() + order.add.size());
  for (const bool joins : {false, true}) {
    for (const groups::GroupRow& row : joins ? order.add : order.remove) {
      const std::string& key = active_directory ? row.key : row.name;
      bound.push_back({row, joins, groups::bind_group(session, row), groups::group_identity(session, key),
                       directory::Group_RID(session, key)});
    }
  }
  return bound;
}

/// The changes of one user.
class UserGroups {
 public:
  UserGroups(SelectedUser user, Memberships known) : user_(std::move(user)), known_(std::move(known)) {}

  /// False when there is nothing to do, or it cannot be done; it was told then.
  bool is_to_change(const BoundGroup& group) {
    const bool is_primary = group.rid != 0 && group.rid == known_.primary;
    const bool is_in = is_primary || known_.groups.contains(group.identity);
    if (is_in != group.joins && !is_primary)
      return true;
    if (!is_in)
      note("not in " + group.row.name);
    else if (group.joins)
      note("in " + group.row.name + " already");
    else
      refuse(group.row.name +
             " is the primary group, which no account can leave: make another group the primary one first");
    return false;
  }
  void changed(const BoundGroup& group, const base::Trap& failure, const RunHooks& hooks) {
    const std::string done = (group.joins ? "added to " : "removed from ") + group.row.name;
    if (failure.number() != 0)
      return refuse("not " + done + ": " + base::in_words(failure.number(), failure.description()));
    note(done);
    if (group.joins)
      known_.groups.insert(group.identity);
    else
      known_.groups.erase(group.identity);
    if (hooks.changed) {
      hooks.changed({group.joins ? AccountChange::Kind::kJoined : AccountChange::Kind::kLeft, known_.sid,
                     group.object->ADsPath()});
    }
  }
  /// Of so many groups in all; a run that was stopped may have left out some.
  void end(std::size_t groups) {
    if (settled_ < groups)
      refuse("stopped before the other groups");
  }

  [[nodiscard]] const SelectedUser& user() const { return user_; }
  [[nodiscard]] bool is_begun() const { return settled_ != 0; }
  [[nodiscard]] session::RunOutcome outcome() const {
    session::RunOutcome outcome;
    outcome.done = refused_.empty() || noted_;
    outcome.light = refused_.empty() ? session::kGreen : noted_ ? session::kYellow : session::kRed;
    outcome.message = user_.name + ": " + told_;
    outcome.warnings = refused_;
    return outcome;
  }

 private:
  void note(const std::string& text) {
    noted_ = true;
    tell(text);
  }
  void refuse(const std::string& text) {
    refused_.push_back(text);
    tell(text);
  }
  void tell(const std::string& text) {
    ++settled_;
    told_ += (told_.empty() ? "" : "; ") + text;
  }

  SelectedUser user_;
  Memberships known_;
  std::size_t settled_ = 0;  ///< groups about which something was told
  std::string told_;
  bool noted_ = false;
  std::vector<std::string> refused_;
};

/// One run. Where groups take many members by one request, users are gathered, and a group takes all of them
/// before the next one does; elsewhere a user is done with before the next.
class GroupsRun {
 public:
  GroupsRun(Session& session, const GroupsOrder& order, session::RunView& view, const RunHooks& hooks)
      : session_(session),
        view_(view),
        hooks_(hooks),
        groups_(bind_groups(session, order)),
        gathers_(
            std::ranges::all_of(groups_, [](const BoundGroup& group) { return group.object->takes_many(); })),
        rules_(rules_of(session, hooks, !gathers_)) {
    if (gathers_)
      rules_.attributes = groups::membership_attributes();
  }

  bool run() {
    bool whole = false;
    try {
      whole = walk_selection(session_, rules_, [&](SelectedUser& user) { visit(user); });
    } catch (const base::RuntimeError&) {
      change_gathered();
      throw;
    }
    if (whole)
      change_gathered();
    return whole && !stopped_;
  }

 private:
  void visit(SelectedUser& user) {
    if (!gathers_) {
      view_.step("Changing groups of " + user.name);
      std::vector<UserGroups> one;
      one.emplace_back(user, groups::read_memberships(session_, user.object));
      return change(one);
    }
    // A user whom another row includes, too, shall be seen as the first visit left it.
    const auto [seen, is_new] = seen_.try_emplace(base::upper(user.path), requests_);
    if (!is_new) {
      if (seen->second == requests_)
        change_gathered();
      seen->second = requests_;
      user.values.clear();
    }
    user.name = platform::plain_name(directory::relative_name(directory::name_in_path(user.path)));
    gathered_.push_back(user);
    if (gathered_.size() == groups::kMostMembersAtOnce)
      change_gathered();
  }

  void change_gathered() {
    std::vector<SelectedUser> users = std::exchange(gathered_, {});
    ++requests_;
    if (users.empty() || stopped_)
      return;
    view_.step("Changing groups of " + std::to_string(users.size()) + " users");
    std::vector<std::string> unread;
    for (const SelectedUser& user : users) {
      if (user.values.empty())
        unread.push_back(user.path);
    }
    std::vector<std::optional<Memberships>> read = groups::read_memberships(session_, unread);
    auto next = read.begin();
    std::vector<UserGroups> changes;
    changes.reserve(users.size());
    for (SelectedUser& user : users) {
      try {
        auto known = user.values.empty() ? std::move(*next++) : groups::memberships_of(user.values);
        if (!known)
          known = groups::read_memberships(session_, session_.platform.directory.GetObject(user.path));
        changes.emplace_back(std::move(user), std::move(*known));
      } catch (const base::RuntimeError& failure) {
        if (rules_.failed && rules_.failed(user.path, failure))
          continue;
        change(changes);
        throw;
      }
    }
    change(changes);
  }

  void change(std::vector<UserGroups>& users) {
    for (const BoundGroup& group : groups_) {
      if (!stopped_)
        change(users, group);
    }
    for (UserGroups& user : users) {
      if (!user.is_begun())
        continue;
      user.end(groups_.size());
      const session::RunOutcome outcome = user.outcome();
      session_.log.line(outcome.message);
      if (hooks_.done)
        hooks_.done({outcome, user.user().name, user.user().path});
    }
  }

  void change(std::vector<UserGroups>& users, const BoundGroup& group) {
    std::vector<UserGroups*> changing;
    std::vector<std::string> paths;
    for (UserGroups& user : users) {
      if (!user.is_to_change(group))
        continue;
      changing.push_back(&user);
      paths.push_back(session::is_active_directory(session_)
                          ? user.user().path
                          : directory::winnt_path(session_, user.user().name));
    }
    groups::JoinWatch watch;
    watch.told = [&](std::size_t index, const base::Trap& failure) {
      changing[index]->changed(group, failure, hooks_);
    };
    watch.goes_on = [&] {
      stopped_ = stopped_ || (gathers_ && !rules_.goes_on());
      return !stopped_;
    };
    (group.joins ? groups::join_members : groups::leave_members)(*group.object, paths, watch);
  }

  Session& session_;
  session::RunView& view_;
  const RunHooks& hooks_;
  std::vector<BoundGroup> groups_;
  bool gathers_;
  WalkRules rules_;
  std::vector<SelectedUser> gathered_;
  std::size_t requests_ = 0;                           ///< how often those that were gathered were changed
  std::unordered_map<std::string, std::size_t> seen_;  ///< by path, in capitals: what `requests_` was then
  bool stopped_ = false;
};

}  // namespace

bool change_groups(Session& session, const GroupsOrder& order, session::RunView& view,
                   const RunHooks& hooks) {
  const session::RunScope scope(session, view);
  GroupsRun run(session, order, view, hooks);
  session.log.begin_block();
  const bool whole = run.run();
  session.log.close();
  return whole;
}

}  // namespace twk::batch
