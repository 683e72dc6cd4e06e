#pragma once

#include <string>

#include "platform/files.hpp"

namespace twk::local {

/// Copies an ordinary file of the workstation as `Files::copy_file` describes. A symbolic link at `from` is
/// refused (75). A copy that replaces a file is written next to it and renamed over it when it is whole.
bool copy_file(const std::string& from, const std::string& to, bool replace,
               const platform::CopyProgress& progress);

}  // namespace twk::local
