#pragma once

#include <cstddef>

namespace twk::platform {

/// Bytes of logon hours: a bit for each hour of a week, [MS-SAMR] 2.2.6.5.
inline constexpr std::size_t kLogonHoursSize = 21;

}  // namespace twk::platform
