#pragma once

#include "platform/clock.hpp"

namespace twk::local {

/// The workstation's clock, in its time zone.
class SystemClock final : public platform::Clock {
 public:
  base::Date now() override;
};

}  // namespace twk::local
