#pragma once

#include <sys/stat.h>

#include <cstddef>
#include <cstdint>
#include <list>
#include <optional>
#include <string>
#include <string_view>
#include <unordered_map>
#include <utility>

#include "local/turn.hpp"

namespace twk::local {

/// Finds names in folders without regard to case, and remembers the folders it looked through last, so that
/// making ten thousand folders in one does not read it ten thousand times.
///
/// A remembered folder is used until its time of change differs from the one that was seen. What another
/// program adds within the same tick of the file system's clock may be overlooked, and then only when spelled
/// in another case: a name in its own spelling is always found by asking the system. The same holds for
/// what is added after the first look of a turn.
class FoldedNames {
 public:
  explicit FoldedNames(TurnPtr turn = std::make_shared<Turn>()) : turn_(std::move(turn)) {}

  /// The name in `folder` that equals `name`, or folds to it: the exact spelling if there is one, else the
  /// first in byte order.
  std::optional<std::string> find(const std::string& folder, std::string_view name);

  struct Folded {
    bool folder_is_there = false;
    std::optional<std::string> name;
  };
  /// The same for a name that does not exist there as spelled.
  Folded find_other_case(const std::string& folder, std::string_view name);

  /// This program is about to add a name to a folder, and has added it: keeps what is remembered up to date.
  /// A call of `find_other_case` just before serves as one of `before_adding`.
  void before_adding(const std::string& folder);
  void added(const std::string& folder, std::string_view name);

 private:
  struct Folder {
    std::string path;
    struct stat seen {};
    std::uint64_t looked_at = 0;                         ///< the turn
    bool to_be_changed = false;                          ///< matched just before this program added to it
    std::unordered_map<std::string, std::string> names;  ///< folded name to name
  };
  static constexpr std::size_t kRemembered = 8;

  Folder* remembered(const std::string& path);
  Folder* read(const std::string& path, const struct stat& status);

  TurnPtr turn_;
  std::list<Folder> folders_;  ///< the most recently used first
};

}  // namespace twk::local
