#include "groups/change_members.hpp"

#include <algorithm>
#include <functional>
#include <optional>
#include <unordered_map>

#include "base/error_words.hpp"
#include "base/errors.hpp"
#include "base/text.hpp"
#include "directory/operations.hpp"
#include "groups/join_members.hpp"
#include "groups/memberships.hpp"
#include "session/loaded_domain.hpp"
#include "session/session.hpp"

namespace twk::groups {
namespace {

using controls::ListRow;
using controls::ListView;
using session::Session;

/// After this many boxes in one run, the outcome alone reports the rest.
constexpr std::size_t kMostBoxes = 10;

std::string counted(std::size_t number) {
  return base::to_text(static_cast<std::int64_t>(number));
}

/// One change of members.
struct Change {
  Session& session;
  const GroupRow& group;
  ListView& from;
  ListView& to;
  MembersOutcome outcome;
};

/// Binds the group and prepares the change. False when that failed, which a box reported.
bool bind_chosen(Change& change, const char* failure, const std::function<void()>& bind) {
  base::Trap trap;
  change.outcome.bound = trap(bind);
  if (change.outcome.bound)
    return true;
  change.outcome.text = std::string(failure) + ": " + base::in_words(trap.number(), trap.description());
  change.session.platform.dialogs.MsgBox(failure, platform::Buttons::kOk, platform::Icon::kExclamation, "");
  return false;
}

/// Rows from the last to the first.
std::vector<const ListRow*> rows_of(const ListView& list, std::span<const std::string> users) {
  std::vector<const ListRow*> rows;
  for (const std::string& user : users) {
    if (const ListRow* const row = list.find_key(user))
      rows.push_back(row);
  }
  std::ranges::sort(rows, std::greater(), [&](const ListRow* row) { return list.place_of(*row); });
  rows.erase(std::unique(rows.begin(), rows.end()), rows.end());
  return rows;
}

void tell_outcome(Change& change) {
  MembersOutcome& outcome = change.outcome;
  const std::size_t reasons = outcome.refused.size() + (outcome.not_kept.empty() ? 0 : 1);
  if (reasons == 0) {
    outcome.text = "Number of Members = " + counted(change.session.domain.Members.size());
    return;
  }
  outcome.text = change.group.name + ": " +
                 (outcome.refused.empty() ? outcome.not_kept : outcome.refused.front().reason);
  if (reasons > 1)
    outcome.text += " (and " + counted(reasons - 1) + " more)";
}

/// Tells what became of each user: a failure, a reason of our own against it, or neither.
using TellUser =
    std::function<void(const ListRow& row, const base::Trap& failure, const std::string& reason)>;

/// Changes the users and moves the rows of those whom nothing was against.
void change_users(
    Change& change, std::span<const std::string> users,
    const std::function<void(const std::vector<const ListRow*>& rows, const TellUser& tell)>& change_all) {
  std::vector<const ListRow*> moved;
  platform::WriteBatch batch(change.session.platform.directory);
  change_all(rows_of(change.from, users), [&](const ListRow& row, const base::Trap& failure,
                                              const std::string& reason) {
    if (failure.number() == 0 && reason.empty()) {
      moved.push_back(&row);
      return change.outcome.changed.push_back(row.key);
    }
    change.outcome.refused.push_back(
        {row.key, failure.number(),
         failure.number() == 0 ? reason
                               : row.text + ": " + base::in_words(failure.number(), failure.description())});
  });
  base::Trap trap;
  if (!trap([&] { batch.commit(); }))
    change.outcome.not_kept = base::in_words(trap.number(), trap.description());
  controls::move_rows(change.from, moved, change.to);
  tell_outcome(change);
}

/// Why each cannot leave: the reason for a user whose primary group it is, or the failure to read the user.
class LeaveChecks {
 public:
  LeaveChecks(Change& change, std::int32_t group_id) : change_(change), group_id_(group_id) {}

  /// Reads what is asked of many users by few requests.
  void read(std::span<const ListRow* const> rows) {
    std::vector<std::string> paths;
    paths.reserve(rows.size());
    for (const ListRow* const row : rows)
      paths.push_back(row->key);
    const auto known = read_memberships(change_.session, paths);
    for (std::size_t i = 0; i < rows.size(); ++i) {
      if (known[i])
        primary_.emplace(paths[i], known[i]->primary);
    }
  }

  /// Empty when nothing is against it.
  std::string reason_against(const ListRow& row) {
    if (primary_group(row) != group_id_)
      return {};
    if (boxes_++ < kMostBoxes) {
      change_.session.platform.dialogs.MsgBox("Can't remove user '" + row.text + "' from '" +
                                                  change_.group.name + "'\r\nas it is their primary Group.",
                                              platform::Buttons::kOk, platform::Icon::kNone, "");
    }
    return row.text + ": it is their primary Group";
  }

 private:
  std::int32_t primary_group(const ListRow& row) const {
    const auto known = primary_.find(row.key);
    return known != primary_.end()
               ? known->second
               : change_.session.platform.directory.GetObject(row.key)->Get("PrimaryGroupID").integer();
  }

  Change& change_;
  std::int32_t group_id_;
  std::unordered_map<std::string, std::int32_t> primary_;  ///< what was read of many by their paths
  std::size_t boxes_ = 0;
};

}  // namespace

MembersOutcome add_members(Session& session, const GroupRow& group, std::span<const std::string> users) {
  Change change{session, group, session.domain.NotMembers, session.domain.Members, {}};
  platform::ObjectPtr bound;
  if (bind_chosen(change, "Error Connecting to Group", [&] { bound = bind_group(session, group); })) {
    change_users(change, users, [&](const std::vector<const ListRow*>& rows, const TellUser& tell) {
      std::vector<std::string> paths;
      paths.reserve(rows.size());
      for (const ListRow* const row : rows)
        paths.push_back(member_path(session, *row));
      join_members(*bound, paths,
                   {[&](std::size_t index, const base::Trap& failure) { tell(*rows[index], failure, {}); },
                    [] { return true; }});
    });
  }
  return std::move(change.outcome);
}

MembersOutcome remove_members(Session& session, const GroupRow& group, std::span<const std::string> users) {
  Change change{session, group, session.domain.Members, session.domain.NotMembers, {}};
  platform::ObjectPtr bound;
  std::optional<LeaveChecks> checks;
  if (bind_chosen(change, "Could not connect to Group", [&] {
        bound = bind_group(session, group);
        if (session::is_active_directory(session))
          checks.emplace(change, directory::Group_RID(session, group.key));
      })) {
    change_users(change, users, [&](const std::vector<const ListRow*>& rows, const TellUser& tell) {
      if (checks && rows.size() > 1 && bound->takes_many())
        checks->read(rows);
      std::vector<const ListRow*> leaving;
      std::vector<std::string> paths;
      for (const ListRow* const row : rows) {
        std::string reason;
        base::Trap trap;
        trap([&] { reason = checks ? checks->reason_against(*row) : std::string(); });
        if (trap.number() != 0 || !reason.empty()) {
          tell(*row, trap, reason);
          continue;
        }
        leaving.push_back(row);
        paths.push_back(member_path(session, *row));
      }
      leave_members(
          *bound, paths,
          {[&](std::size_t index, const base::Trap& failure) { tell(*leaving[index], failure, {}); },
           [] { return true; }});
    });
  }
  return std::move(change.outcome);
}

}  // namespace twk::groups
