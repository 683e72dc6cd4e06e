#include "local/system_clock.hpp"

#include <ctime>

namespace twk::local {

base::Date SystemClock::now() {
  const std::time_t seconds = std::time(nullptr);
  std::tm local{};
  localtime_r(&seconds, &local);
  return base::make_date({local.tm_year + 1900, local.tm_mon + 1, local.tm_mday, local.tm_hour, local.tm_min,
                          std::min(local.tm_sec, 59)});
}

}  // namespace twk::local
