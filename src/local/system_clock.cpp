#include "local/system_clock.hpp"

#include <algorithm>
#include <ctime>

#include "base/errors.hpp"

namespace twk::local {
namespace {

constexpr std::time_t kDay = 86400;
constexpr std::int64_t kFiletimePerSecond = 10'000'000;
/// Seconds from 1 January 1601 to 1 January 1970.
constexpr std::int64_t kUnixEpoch = 11'644'473'600;

std::time_t unix_time(base::Date date) {
  return base::to_filetime(date) / kFiletimePerSecond - kUnixEpoch;
}

base::Date date_of(std::time_t seconds) {
  return base::from_filetime((seconds + kUnixEpoch) * kFiletimePerSecond);
}

/// Seconds that clocks here are ahead of UTC at a moment.
std::time_t offset_at(std::time_t utc) {
  std::tm parts{};
  if (localtime_r(&utc, &parts) == nullptr)
    base::raise(base::error::kOverflow, "The time zone of this workstation does not reach to that date");
  return parts.tm_gmtoff;
}

}  // namespace

base::Date SystemClock::utc_now() {
  return date_of(std::time(nullptr));
}

base::Date SystemClock::to_local(base::Date utc) {
  const std::time_t seconds = unix_time(utc);
  return date_of(seconds + offset_at(seconds));
}

base::Date SystemClock::to_utc(base::Date local) {
  const std::time_t shown = unix_time(local);
  // A nearby change of the clocks lies between these two; usually they are equal.
  const std::time_t by_offset_before = shown - offset_at(shown - kDay);
  const std::time_t by_offset_after = shown - offset_at(shown + kDay);
  const auto [first, second] = std::minmax(by_offset_before, by_offset_after);
  for (const std::time_t moment : {first, second}) {
    if (moment + offset_at(moment) == shown)
      return date_of(moment);
  }
  return date_of(by_offset_before);
}

}  // namespace twk::local
