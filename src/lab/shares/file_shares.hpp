#pragma once

#include <cstdint>
#include <filesystem>
#include <functional>
#include <optional>
#include <set>
#include <string>
#include <string_view>
#include <vector>

#include "ads/share_object.hpp"
#include "lab/store/entry_store.hpp"
#include "platform/security_descriptor.hpp"

namespace twk::lab {

using ads::FileShare;

/// The shares of a file server, records of its "server.ldif":
///
///     dn: CN=Users,CN=Shares
///     objectClass: fileShare
///     path: D:\Users
///     description: …            the comment
///     maxUserCount: -1          -1 for no limit
///     nTSecurityDescriptor:: …  self-relative, when there is one
///
/// Each drive is also shared as a whole, as "D$".
class FileShares final : public ads::ShareStore {
 public:
  /// `drives` returns the letters of the server's drives, `has_folder` whether a path of the server is a
  /// folder.
  FileShares(EntryStore& store, std::function<std::vector<std::string>()> drives,
             std::function<bool(std::string_view)> has_folder);

  /// The drives' shares first, then the others in the order they were made.
  [[nodiscard]] std::vector<FileShare> all() override;
  [[nodiscard]] std::optional<FileShare> find(std::string_view name) override;
  /// Adds the share or replaces the one of its name (`replace`). Raises kShareExists for a new share of a
  /// name in use, kUnwilling for a drive's share, 76 for a path that is not a folder of the server, and
  /// kConstraint for a name that is empty, longer than 80 characters, or contains a character that no share
  /// name may have.
  void store(const FileShare& share, bool replace) override;
  /// Raises kShareNotFound, kUnwilling for a drive's share.
  void remove(std::string_view name) override;
  /// True when a share's folder is this one or is below it. The drives' own shares do not count.
  [[nodiscard]] bool hold(std::string_view path);

 private:
  [[nodiscard]] bool is_drive_share(std::string_view name) const;
  void check(const FileShare& share) const;
  void read_paths();
  void forget_path(std::string_view path);

  EntryStore& store_;
  std::function<std::vector<std::string>()> drives_;
  mutable std::string known_drives_;  ///< letters of drives found so far: a drive does not disappear
  std::function<bool(std::string_view)> has_folder_;
  std::multiset<std::string> paths_;         ///< of all shares, as `folded_path` spells them
  std::optional<std::uint64_t> paths_read_;  ///< `readings` of the store when `paths_` was read
};

/// "D:\USERS\": a path of a server in one spelling for all its spellings, with a backslash after each
/// part.
std::string folded_path(std::string_view path);

}  // namespace twk::lab
