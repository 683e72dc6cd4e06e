#pragma once

#include <string>
#include <string_view>

namespace twk::local {

/// Raises `base::RuntimeError` for a failed system call: the runtime's file number for `error` (a value of
/// errno), and "cannot <action> <path>: <the system's words>". ENOENT is 53 when the folder is there and only
/// the file is missing, else 76.
[[noreturn]] void raise_file_error(int error, std::string_view action, const std::string& path);

}  // namespace twk::local
