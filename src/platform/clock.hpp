#pragma once

#include "base/dates.hpp"

namespace twk::platform {

/// The time, and the zone that this workstation is in.
class Clock {
 public:
  virtual ~Clock() = default;
  /// Date and time in UTC.
  virtual base::Date utc_now() = 0;
  /// What clocks here show at a moment in UTC, with that day's summer time, not today's.
  virtual base::Date to_local(base::Date utc) = 0;
  /// The moment in UTC at which clocks here show `local`. Of a time shown twice, because clocks are set back,
  /// the first counts; a time never shown, because they are set forward, counts on from before the change. So
  /// midnight is always where its day begins.
  virtual base::Date to_utc(base::Date local) = 0;

  /// Local date and time.
  base::Date now() { return to_local(utc_now()); }
};

}  // namespace twk::platform
