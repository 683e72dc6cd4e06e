#pragma once

#include <string>

namespace twk::local {

inline constexpr unsigned kModuleNotFound = 126;  // ERROR_MOD_NOT_FOUND, [MS-ERREF] 2.2

/// The entry of a part of the program that few runs need, so that the others start without its libraries:
/// `file` in lib/tarnwick beside the folder of the program. It stays loaded. Raises 126 with the reason, in
/// which `what` says what the part is for.
void* load_module(const std::string& file, const char* entry, const std::string& what);

}  // namespace twk::local
