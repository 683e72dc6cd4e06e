#pragma once

#include <cstdint>
#include <functional>
#include <optional>
#include <string>
#include <string_view>
#include <unordered_map>
#include <vector>

#include "lab/store/entry_store.hpp"
#include "platform/security_descriptor.hpp"

namespace twk::lab {

/// The descriptors of a file server's files and folders, records of its "server.ldif" that mirror the paths:
///
///     dn: CN=jo,CN=Users,CN=D,CN=Folders
///     objectClass: fileObject
///     nTSecurityDescriptor:: …  self-relative
///     locked: TRUE              a program has the file open: nobody may change or remove it
///
/// What has no descriptor has the one that it would inherit from the folder above, as that is now; a drive
/// without one is Administrators' and System's, and for users to read.
class FolderDescriptors {
 public:
  /// `is_folder` tells whether a path of the server is a folder.
  FolderDescriptors(EntryStore& store, std::function<bool(std::string_view)> is_folder);

  [[nodiscard]] platform::SecurityDescriptor effective(std::string_view path) const;
  /// The same for a path that is known to be a file.
  [[nodiscard]] platform::SecurityDescriptor effective_of_file(std::string_view path) const;
  void store(std::string_view path, const platform::SecurityDescriptor& descriptor);
  [[nodiscard]] bool is_locked(std::string_view path) const;
  /// The file or folder, with all below it, is gone.
  void forget(std::string_view path);
  /// It has another name, or another place in a folder.
  void move(std::string_view from, std::string_view to);

 private:
  /// The record of a path, made with those above it when it is not there. The name of it.
  std::string make_record(std::string_view path);
  void forget_outdated() const;
  /// The one that the first `count` parts have for themselves.
  [[nodiscard]] std::optional<platform::SecurityDescriptor> own(const std::vector<std::string>& parts,
                                                                std::size_t count) const;
  /// Of a folder, remembered for who goes through a tree.
  struct Folder {
    platform::SecurityDescriptor own;
    std::optional<platform::SecurityDescriptor>
        of_files{};  ///< of those in it without one; found when asked for
  };
  /// That which the first `count` parts lead to.
  Folder& folder(const std::vector<std::string>& parts, std::size_t count) const;

  EntryStore& store_;
  std::function<bool(std::string_view)> is_folder_;
  mutable std::unordered_map<std::string, Folder> folders_;  ///< by the path in capitals
  mutable std::uint64_t readings_ = 0;                       ///< of the store, when they were found out
};

}  // namespace twk::lab
