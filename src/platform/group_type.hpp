#pragma once

#include <cstdint>

/// Bits of the attribute "groupType", [MS-ADTS] 2.2.12.
namespace twk::platform::group_type {

inline constexpr std::int32_t kBuiltin = 1;
inline constexpr std::int32_t kGlobal = 2;
inline constexpr std::int32_t kLocal = 4;  ///< of a domain; of a WinNT domain a local group
inline constexpr std::int32_t kUniversal = 8;
/// A group that access lists can name; without it one for mail alone.
inline constexpr std::int32_t kSecurity = INT32_MIN;

inline constexpr std::int32_t kGlobalSecurity = kSecurity | kGlobal;

}  // namespace twk::platform::group_type
