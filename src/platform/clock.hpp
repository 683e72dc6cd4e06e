#pragma once

#include "base/dates.hpp"

namespace twk::platform {

class Clock {
 public:
  virtual ~Clock() = default;
  /// Local date and time.
  virtual base::Date now() = 0;
};

}  // namespace twk::platform
