#pragma once

#include <cstdint>
#include <functional>
#include <map>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "lab/store/entry_store.hpp"
#include "platform/security_descriptor.hpp"

namespace twk::lab {

/// The descriptors of a file server's files and folders, records of its "server.ldif" that mirror the paths:
///
///     dn: CN=jo,CN=Users,CN=D,CN=Folders
///     objectClass: fileObject
///     nTSecurityDescriptor:: …  self-relative
///     locked: TRUE              a program has the file open: it cannot be changed or removed
///
/// What has no descriptor of its own has the one that it would inherit now from the folder above; a drive
/// without one gives Administrators and System full control, and users read access.
class FolderDescriptors {
 public:
  /// `is_folder` says whether a path of the server is a folder.
  FolderDescriptors(EntryStore& store, std::function<bool(std::string_view)> is_folder);

  [[nodiscard]] platform::SecurityDescriptor effective(std::string_view path) const;
  /// The same for a path that is known to be a file.
  [[nodiscard]] platform::SecurityDescriptor effective_of_file(std::string_view path) const;
  void store(std::string_view path, const platform::SecurityDescriptor& descriptor);
  [[nodiscard]] bool is_locked(std::string_view path) const;
  /// The file or folder, with everything below it, is gone.
  void forget(std::string_view path);
  /// It has a new name, or is in another folder.
  void move(std::string_view from, std::string_view to);

 private:
  /// The name of the record of the first `count` parts, which is made, with those above it, when it does not
  /// exist. It gets the descriptor, self-relative, unless that is empty.
  std::string make_record(const std::vector<std::string>& parts, std::size_t count,
                          const std::string& descriptor);
  /// The folder of that key and those in it, whose descriptors may come from its own. What is remembered
  /// about a folder above does not depend on it.
  void forget_remembered(const std::string& key) const;
  void forget_outdated() const;
  /// The first `count` parts' own descriptor.
  [[nodiscard]] std::optional<platform::SecurityDescriptor> own(const std::vector<std::string>& parts,
                                                                std::size_t count) const;
  /// A folder's, remembered for walks through a tree.
  struct Folder {
    platform::SecurityDescriptor own;
    std::optional<platform::SecurityDescriptor>
        of_files{};  ///< for files in it without their own; computed on demand
  };
  /// The descriptor in effect for the first `count` parts.
  Folder& folder(const std::vector<std::string>& parts, std::size_t count) const;

  EntryStore& store_;
  std::function<bool(std::string_view)> is_folder_;
  mutable std::map<std::string, Folder> folders_;  ///< by the path in capitals, "D\\USERS\\"
  mutable std::uint64_t readings_ = 0;             ///< of the store, when they were computed
};

}  // namespace twk::lab
