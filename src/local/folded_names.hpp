#pragma once

#include <sys/stat.h>

#include <cstddef>
#include <list>
#include <optional>
#include <string>
#include <string_view>
#include <unordered_map>

namespace twk::local {

/// Finds names in folders without regard to case, and remembers the folders it looked through last, so that
/// making ten thousand folders in one does not read it ten thousand times.
///
/// A remembered folder is used as long as its time of change is the one that was seen. What another program
/// adds within the same tick of the file system's clock may be overlooked, and then only under a spelling of
/// another case: a name spelled as it stands is always found by asking the system.
class FoldedNames {
 public:
  /// The name in `folder` that `name` is, or folds to: one spelled the same first, else the first in byte
  /// order.
  std::optional<std::string> find(const std::string& folder, std::string_view name);

  struct Folded {
    bool folder_is_there = false;
    std::optional<std::string> name;
  };
  /// The same for a name that does not stand there as it is spelled.
  Folded find_other_case(const std::string& folder, std::string_view name);

  /// This program is about to add a name to a folder, and has added it: keeps what is remembered true. A call
  /// of `find_other_case` just before says as much as one of `before_adding`.
  void before_adding(const std::string& folder);
  void added(const std::string& folder, std::string_view name);

 private:
  struct Folder {
    std::string path;
    struct stat seen {};
    bool to_be_changed = false;  ///< was as remembered just before this program adds to it
    std::unordered_map<std::string, std::string> names;  ///< folded name to name
  };
  static constexpr std::size_t kRemembered = 8;

  Folder* remembered(const std::string& path);
  Folder* read(const std::string& path, const struct stat& status);

  std::list<Folder> folders_;  ///< the one used last in front
};

}  // namespace twk::local
