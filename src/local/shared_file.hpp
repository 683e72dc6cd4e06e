#pragma once

#include <sys/types.h>

#include <string>

#include "local/descriptor.hpp"

/// Files in folders that others write to as well: what a fellow administrator puts under a name there must
/// not lead to a file of the person who runs the program.
namespace twk::local {

/// Where the links at the end of a path lead. Only links made by the person, the owner of their folder
/// or the system are followed; any other raises kPermissionDenied.
std::string follow_trusted_links(const std::string& path);

/// Opens an ordinary file by such a path. Raises kPermissionDenied for a file that has several names (hard
/// links), kPathFileAccess for anything that is not an ordinary file. With O_TRUNC the file is emptied only
/// after these checks.
Descriptor open_shared_file(const std::string& path, int flags, mode_t mode = 0);
/// The same; below 0 when there is no such file.
Descriptor try_open_shared_file(const std::string& path, int flags, mode_t mode = 0);

}  // namespace twk::local
