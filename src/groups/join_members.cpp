#include "groups/join_members.hpp"

#include <algorithm>

namespace twk::groups {
namespace {

class Joining {
 public:
  Joining(platform::DirectoryObject& group, std::span<const std::string> paths, const JoinWatch& watch)
      : group_(group), paths_(paths), watch_(watch) {}

  /// False when the rest was left out.
  bool join(std::size_t first, std::size_t count) {
    if (!watch_.goes_on())
      return false;
    base::Trap trap;
    if (count == 1) {
      trap([&] { group_.Add(paths_[first]); });
      watch_.joined(first, trap);
      return true;
    }
    bool together = false;
    trap([&] { together = group_.AddTogether(paths_.subspan(first, count)); });
    if (!together && trap.number() == 0)
      return join(first, count / 2) && join(first + count / 2, count - count / 2);
    for (std::size_t i = first; i < first + count; ++i)
      watch_.joined(i, trap);
    return true;
  }

 private:
  platform::DirectoryObject& group_;
  std::span<const std::string> paths_;
  const JoinWatch& watch_;
};

}  // namespace

void join_members(platform::DirectoryObject& group, std::span<const std::string> paths,
                  const JoinWatch& watch) {
  // A request of this size stays well below the 10 MB that servers take.
  constexpr std::size_t kAtOnce = 1000;
  Joining joining(group, paths, watch);
  for (std::size_t first = 0; first < paths.size(); first += kAtOnce) {
    if (!joining.join(first, std::min(kAtOnce, paths.size() - first)))
      return;
  }
}

}  // namespace twk::groups
