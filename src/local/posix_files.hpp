#pragma once

#include <memory>
#include <string>
#include <string_view>

#include "local/folded_names.hpp"
#include "platform/files.hpp"

namespace twk::local {

/// Files of the workstation itself. Symbolic links are followed. New files and folders are open to the
/// owner's group, less the umask, because a database directory is shared. A network path ("\\FS1\D$") raises
/// 76: it is not on this machine. Messages name the path and what was tried.
class PosixFiles final : public platform::Files {
 public:
  /// `names` may be shared with others that search the same folders.
  explicit PosixFiles(std::shared_ptr<FoldedNames> names = std::make_shared<FoldedNames>())
      : names_(std::move(names)) {}

  bool exists(std::string_view path) override;
  bool is_directory(std::string_view path) override;
  void make_directory(std::string_view path) override;
  std::vector<platform::FileEntry> list(std::string_view path) override;
  platform::FileEntry status(std::string_view path) override;
  void remove_directory(std::string_view path) override;

  /// Also reads a named pipe, to its end.
  std::string read(std::string_view path) override;
  void write(std::string_view path, std::string_view bytes) override;
  /// A file; a folder raises 75.
  void remove(std::string_view path) override;
  /// With the mode of the old file, less the umask.
  bool copy_file(std::string_view from, std::string_view to, bool replace,
                 const platform::CopyProgress& progress) override;
  /// The same to a file that does not exist yet, for paths in the system's form, which are not folded: that
  /// of the target was just looked up in the names of this object.
  bool copy_to_new(const std::string& from, const std::string& to, const platform::CopyProgress& progress);
  void rename(std::string_view from, std::string_view to, bool replace) override;

  std::unique_ptr<platform::AppendFile> open_append(std::string_view path, bool truncate) override;
  /// A write that fails (disk full) leaves no part of a record after the old end of the file.
  std::unique_ptr<platform::RandomFile> open_random(std::string_view path) override;
  std::unique_ptr<platform::RandomFile> open_random_read(std::string_view path) override;

 private:
  [[nodiscard]] std::string local(std::string_view path) const;

  std::shared_ptr<FoldedNames> names_;
};

/// The path in the local system's form: backslashes become slashes, and the last part becomes the name of
/// the existing file that it folds to, the first in byte order of several. Raises 52 for an empty path
/// or one that holds a NUL, 76 for a network path.
std::string to_local_path(std::string_view path);
std::string to_local_path(std::string_view path, FoldedNames& names);

}  // namespace twk::local
