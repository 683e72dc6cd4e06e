#pragma once

#include <string>
#include <string_view>

namespace twk::local {

enum class Access {
  kShared,   ///< owner, group and mode of the file that is replaced; a new file: 0660 less the umask
  kPrivate,  ///< 0600
};

/// Replaces the whole file, or creates it: a temporary file next to it is written, brought to the disk and
/// renamed over it, and the folder brought to the disk. A reader, or a crash, finds the old contents or the
/// new. A symbolic link stays and the file it leads to is replaced. Raises what `raise_file_error` makes of
/// the failure, and then leaves the file as it was and no temporary file; a file that may not be written, or
/// is not an ordinary file, is refused.
void replace_file(const std::string& path, std::string_view bytes, Access access);

/// Brings the names in a folder to the disk.
void sync_folder(const std::string& folder);

}  // namespace twk::local
