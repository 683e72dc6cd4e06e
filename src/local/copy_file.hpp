#pragma once

#include <string>

#include "platform/files.hpp"

namespace twk::local {

/// Copies an ordinary file of the workstation as `Files::copy_file` says. A symbolic link at `from` is
/// refused (75). A copy that replaces a file is made beside it and renamed over it when it is whole.
bool copy_file(const std::string& from, const std::string& to, bool replace,
               const platform::CopyProgress& progress);

}  // namespace twk::local
