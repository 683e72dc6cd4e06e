#include "batch/import_pace.hpp"

#include <cmath>

#include "base/text.hpp"
#include "session/activity_log.hpp"

namespace twk::batch {
namespace {

constexpr std::int64_t kMinute = 60;
constexpr std::int64_t kHour = 60 * kMinute;

std::int64_t seconds_between(base::Date from, base::Date to) {
  constexpr double kSecondsOfDay = 86400;
  return std::llround((to.serial - from.serial) * kSecondsOfDay);
}

std::string duration(std::int64_t seconds) {
  if (seconds < 2 * kMinute)
    return base::to_text(seconds) + " s";
  return seconds < 2 * kHour ? base::to_text(seconds / kMinute) + " min"
                             : base::to_text(seconds / kHour) + " h";
}

}  // namespace

void ImportPace::add(std::int32_t line, std::string_view light) {
  line_ = line;
  ++done_;
  green_ += light == session::kGreen ? 1 : 0;
  yellow_ += light == session::kYellow ? 1 : 0;
}

std::optional<std::string> ImportPace::text(base::Date now) {
  if (seconds_between(told_, now) == 0)
    return std::nullopt;
  told_ = now;
  std::string text = "Line " + base::to_text(line_) + " of " + base::to_text(lines_);
  if (const std::int64_t seconds = seconds_between(begun_, now); seconds > 0) {
    const std::int64_t speed = done_ / seconds;
    text += ", " + (speed > 0 ? base::to_text(speed) + " a second"
                              : base::to_text(done_ * kMinute / seconds) + " a minute");
    text += ", " + duration(std::int64_t{lines_ - line_} * seconds / done_) + " left";
  }
  return text + ". GREEN " + base::to_text(green_) + ", YELLOW " + base::to_text(yellow_) + ", RED " +
         base::to_text(done_ - green_ - yellow_);
}

}  // namespace twk::batch
