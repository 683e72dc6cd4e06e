#pragma once

#include <cstdint>
#include <functional>
#include <string>
#include <string_view>
#include <unordered_map>
#include <unordered_set>

#include "platform/files.hpp"

namespace twk::lifecycle {

/// The names in the folders that a rehearsal asks about, as hashes. The first questions about a folder go to
/// the server; when more follow, the folder is listed once.
class FolderNames {
 public:
  explicit FolderNames(platform::Files& files) : files_(files) {}

  /// True when nothing has that path. False also means that the server must be asked: the folder could not be
  /// listed, or the name is one that a server may know by another (with a dot at its end, a short name,
  /// letters beyond ASCII).
  bool is_surely_absent(std::string_view path);

 private:
  struct Folder {
    std::int32_t questions = 0;
    bool is_listed = false;
    std::unordered_set<std::size_t> names;
  };
  void list(const std::string& path, Folder& folder);

  platform::Files& files_;
  /// Finds a path without a copy of it.
  struct Hash : std::hash<std::string_view> {
    using is_transparent = void;
  };
  std::unordered_map<std::string, Folder, Hash, std::equal_to<>> folders_;
};

}  // namespace twk::lifecycle
