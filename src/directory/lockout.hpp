#pragma once

#include <cstdint>
#include <limits>
#include <string_view>

#include "directory/account_fields.hpp"

/// How long a lock lasts, as the domain's rule says. Numbers are counts of 100-nanosecond steps.
namespace twk::directory {

inline constexpr std::int64_t kForever = std::numeric_limits<std::int64_t>::min();

/// The lockout duration of the domain, negative as the directory stores it; 0 when it has none.
std::int64_t lockout_duration(const AccountDomain& domain);

/// True for a lock that is over by that rule; a duration of 0 or of all time means until an administrator
/// unlocks.
bool is_lock_over(std::int64_t locked, std::int64_t duration, std::int64_t now);

/// A rule of the domain that is such a number; 0 when it has none.
std::int64_t steps_of_domain(const AccountDomain& domain, std::string_view attribute);

}  // namespace twk::directory
