#pragma once

#include <cstdint>
#include <string>
#include <string_view>

namespace twk::local {

/// The runtime's file number for a value of errno. `folder_is_there` distinguishes a missing file (53) from a
/// missing path (76).
std::uint32_t number_of_file_error(int error, bool folder_is_there);

/// Raises `base::RuntimeError` for a failed system call: the runtime's file number for `error` (a value of
/// errno), and "cannot <action> <path>: <the system's words>". ENOENT is 53 when the folder exists and only
/// the file is missing, else 76.
[[noreturn]] void raise_file_error(int error, std::string_view action, const std::string& path);

}  // namespace twk::local
