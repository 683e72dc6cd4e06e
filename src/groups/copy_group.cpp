#include "groups/copy_group.hpp"

#include <vector>

#include "base/error_words.hpp"
#include "base/errors.hpp"
#include "base/text.hpp"
#include "directory/operations.hpp"
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

CopiedUser copy_user(Session& session, platform::DirectoryObject& destination, const ObjectPtr& user) {
  base::Trap trap;
  trap([&] {
    destination.Add(session::is_active_directory(session) ? user->ADsPath()
                                                          : directory::winnt_path(session, user->Name()));
  });
  const Result result = result_of(session, trap.number());
  return {user->ADsPath(), user->Name() + std::string(result.words), result.light};
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
  for (const ObjectPtr& user : users) {
    const CopiedUser copied = copy_user(session, *destination, user);
    view.copied(copied);
    counts.added += copied.light == kAdded.light ? 1 : 0;
    counts.refused += copied.light == kRefused.light ? 1 : 0;
    ++counts.done;
    view.progress(static_cast<int>(counts.done * 100 / users.size()));
    counts.stopped = view.stopped();
    if (counts.stopped)
      break;
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
