#pragma once

#include <cstdint>
#include <string>

#include "base/errors.hpp"
#include "platform/directory.hpp"

namespace twk::lab {

namespace ads_error = platform::ads_error;

inline constexpr std::uint32_t kNoSuchDomain = 0x8007054B;   ///< ERROR_NO_SUCH_DOMAIN
inline constexpr std::uint32_t kBadNetPath = 0x80070035;     ///< ERROR_BAD_NETPATH
inline constexpr std::uint32_t kShareNotFound = 0x80070906;  ///< NERR_NetNameNotFound
inline constexpr std::uint32_t kShareExists = 0x80070846;    ///< NERR_DuplicateShare

using base::raise;

}  // namespace twk::lab
