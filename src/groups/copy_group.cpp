#include "groups/copy_group.hpp"

#include <set>
#include <vector>

#include "base/error_words.hpp"
#include "base/errors.hpp"
#include "base/text.hpp"
#include "directory/names.hpp"
#include "directory/operations.hpp"
#include "groups/join_members.hpp"
#include "platform/adsi.hpp"
#include "session/activity_log.hpp"
#include "session/session.hpp"

namespace twk::groups {
namespace {

using platform::ObjectPtr;
using session::Session;

/// What became of one user.
struct Result {
  std::string_view words;
  std::string_view light;
};

constexpr Result kAdded = {" Added user.", session::kGreen};
constexpr Result kIsMember = {" User already a member.", session::kYellow};
constexpr Result kRefused = {" Error adding user.", session::kRed};

/// The words for a runtime error number, 0 for none. A WinNT group reports an existing member with a
/// different number than a group of Active Directory.
Result result_of(const Session& session, std::uint32_t number) {
  if (number == 0)
    return kAdded;
  const std::uint32_t is_member = session::is_active_directory(session) ? platform::ads_error::kObjectExists
                                                                        : platform::ads_error::kMemberInGroup;
  return number == is_member ? kIsMember : kRefused;
}

std::vector<ObjectPtr> users_of(platform::DirectoryObject& group) {
  std::vector<ObjectPtr> users;
  base::Trap trap;
  for (const ObjectPtr& member : group.Members()) {
    trap([&] {
      if (is_user(*member))
        users.push_back(member);
    });
  }
  return users;
}

std::vector<std::string> paths_of(const Session& session, const std::vector<ObjectPtr>& users) {
  std::vector<std::string> paths;
  paths.reserve(users.size());
  for (const ObjectPtr& user : users) {
    paths.push_back(session::is_active_directory(session) ? user->ADsPath()
                                                          : directory::winnt_path(session, user->Name()));
  }
  return paths;
}

/// The distinguished names of a group's members, in capitals; none in a WinNT domain, where each is asked
/// for.
std::set<std::string> names_of_members(const Session& session, platform::DirectoryObject& group) {
  std::set<std::string> names;
  if (!session::is_active_directory(session))
    return names;
  for (const platform::Value& member : platform::value_or_empty(group, "member").list())
    names.insert(base::upper(member.text()));
  return names;
}

std::string counted(std::size_t number, const char* what) {
  return base::to_text(static_cast<std::int64_t>(number)) + what;
}

/// The users of a copy, counted.
struct Counts {
  std::size_t users = 0;
  std::size_t done = 0;
  std::size_t added = 0;
  std::size_t refused = 0;
  bool stopped = false;
};

CopyOutcome outcome_of(const Counts& counts) {
  const std::size_t members = counts.done - counts.added - counts.refused;
  const std::string_view light = counts.refused != 0              ? session::kRed
                                 : members != 0 || counts.stopped ? session::kYellow
                                                                  : session::kGreen;
  return {true, light,
          (counts.stopped ? "Stopped. " : "") + counted(counts.done, " of ") +
              counted(counts.users, " users: ") + counted(counts.added, " added, ") +
              counted(members, " already members, ") + counted(counts.refused, " refused.")};
}

Counts copy_users(Session& session, const GroupRow& from, const GroupRow& to, CopyView& view) {
  const ObjectPtr source = bind_group(session, from);
  const ObjectPtr destination = bind_group(session, to);
  const std::vector<ObjectPtr> users = users_of(*source);
  Counts counts{.users = users.size()};
  platform::WriteBatch batch(session.platform.directory);
  const auto tell = [&](const ObjectPtr& user, const Result& result) {
    view.copied({user->ADsPath(), user->Name() + std::string(result.words), result.light});
    counts.added += result.light == kAdded.light ? 1 : 0;
    counts.refused += result.light == kRefused.light ? 1 : 0;
    ++counts.done;
    view.progress(static_cast<int>(counts.done * 100 / counts.users));
  };
  // A request with one who is a member already would be refused as a whole.
  const std::set<std::string> members = names_of_members(session, *destination);
  std::vector<ObjectPtr> others;
  std::vector<ObjectPtr> known;
  for (const ObjectPtr& user : users) {
    const bool is_known = members.contains(base::upper(directory::name_in_path(user->ADsPath())));
    (is_known ? known : others).push_back(user);
  }
  JoinWatch watch;
  watch.told = [&](std::size_t index, const base::Trap& failure) {
    tell(others[index], result_of(session, failure.number()));
  };
  watch.goes_on = [&] {
    counts.stopped = counts.done != 0 && view.stopped();
    return !counts.stopped;
  };
  join_members(*destination, paths_of(session, others), watch);
  for (const ObjectPtr& user : known) {
    if (!counts.stopped)
      tell(user, kIsMember);
  }
  batch.commit();
  return counts;
}

}  // namespace

bool confirm_copy(Session& session, const GroupRow& from, const GroupRow& to) {
  return session.platform.dialogs.MsgBox(
             "Are you sure you want to copy all users\r\nfrom: " + from.name + "\r\nto:     " + to.name,
             platform::Buttons::kYesNo, platform::Icon::kQuestion, "Copy Group ?") == platform::Answer::kYes;
}

CopyOutcome copy_group(Session& session, const GroupRow& from, const GroupRow& to, CopyView& view) {
  Counts counts;
  base::Trap trap;
  if (trap([&] { counts = copy_users(session, from, to, view); }))
    return outcome_of(counts);
  return {false, session::kRed, "The copy ended: " + base::in_words(trap.number(), trap.description())};
}

}  // namespace twk::groups
