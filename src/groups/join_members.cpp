#include "groups/join_members.hpp"

#include <algorithm>

namespace twk::groups {
namespace {

/// The two calls of a group that change members in one way.
struct MemberChange {
  void (platform::DirectoryObject::*one)(std::string_view path);
  bool (platform::DirectoryObject::*many)(std::span<const std::string> paths);
};

constexpr MemberChange kJoin = {&platform::DirectoryObject::Add, &platform::DirectoryObject::AddTogether};
constexpr MemberChange kLeave = {&platform::DirectoryObject::Remove,
                                 &platform::DirectoryObject::RemoveTogether};

class ManyMembers {
 public:
  ManyMembers(platform::DirectoryObject& group, const MemberChange& change,
              std::span<const std::string> paths, const JoinWatch& watch)
      : group_(group), change_(change), paths_(paths), watch_(watch) {}

  void take_all() {
    // A request of this size stays well below the 10 MB that servers take.
    const std::size_t at_once = group_.takes_many() ? kMostMembersAtOnce : 1;
    for (std::size_t first = 0; first < paths_.size(); first += at_once) {
      if (!take(first, std::min(at_once, paths_.size() - first)))
        return;
    }
  }

 private:
  /// False when the rest was left out.
  bool take(std::size_t first, std::size_t count) {
    if (!watch_.goes_on())
      return false;
    base::Trap trap;
    if (count == 1) {
      trap([&] { (group_.*change_.one)(paths_[first]); });
      watch_.told(first, trap);
      return true;
    }
    bool together = false;
    trap([&] { together = (group_.*change_.many)(paths_.subspan(first, count)); });
    if (!together && trap.number() == 0)
      return take(first, count / 2) && take(first + count / 2, count - count / 2);
    for (std::size_t i = first; i < first + count; ++i)
      watch_.told(i, trap);
    return true;
  }

  platform::DirectoryObject& group_;
  const MemberChange& change_;
  std::span<const std::string> paths_;
  const JoinWatch& watch_;
};

}  // namespace

void join_members(platform::DirectoryObject& group, std::span<const std::string> paths,
                  const JoinWatch& watch) {
  ManyMembers(group, kJoin, paths, watch).take_all();
}

void leave_members(platform::DirectoryObject& group, std::span<const std::string> paths,
                   const JoinWatch& watch) {
  ManyMembers(group, kLeave, paths, watch).take_all();
}

}  // namespace twk::groups
