#pragma once

#include "base/dates.hpp"

namespace twk::platform {

/// The time, and the zone that this workstation is in.
class Clock {
 public:
  virtual ~Clock() = default;
  /// Date and time in UTC.
  virtual base::Date utc_now() = 0;
  /// What clocks here show at a moment in UTC, with the summer time of that day and not of today.
  virtual base::Date to_local(base::Date utc) = 0;
  /// The moment in UTC at which clocks here show `local`. What they show twice, because they are set back, is
  /// the first of the two; what they never show, because they are set forward, counts on from the time before
  /// the change. So midnight is always where its day begins.
  virtual base::Date to_utc(base::Date local) = 0;

  /// Local date and time.
  base::Date now() { return to_local(utc_now()); }
};

}  // namespace twk::platform
