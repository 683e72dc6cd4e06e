#pragma once

#include <sys/types.h>

#include <string>

#include "local/descriptor.hpp"

/// Files in folders that others write to as well: what a fellow administrator puts under a name there must
/// not lead to a file of the person who runs the program.
namespace twk::local {

/// Where a path leads by the links at its end. Those are followed that the person, the owner of their folder
/// or the system made; any other raises kPermissionDenied.
std::string follow_trusted_links(const std::string& path);

/// Opens an ordinary file by such a path. Raises kPermissionDenied for a file that stands under several names
/// (hard links), kPathFileAccess for anything that is no ordinary file. With O_TRUNC the file is emptied when
/// all that is known.
Descriptor open_shared_file(const std::string& path, int flags, mode_t mode);

}  // namespace twk::local
