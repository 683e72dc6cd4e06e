#pragma once

#include "platform/clock.hpp"

namespace twk::local {

/// The workstation's clock, in the zone that the C library finds (the variable TZ, else the system's).
class SystemClock final : public platform::Clock {
 public:
  base::Date utc_now() override;
  base::Date to_local(base::Date utc) override;
  base::Date to_utc(base::Date local) override;
};

}  // namespace twk::local
