#include "cli/frame/day_texts.hpp"

#include <cmath>

#include "base/text.hpp"
#include "cli/terminal/failures.hpp"
#include "directory/attribute_text.hpp"

namespace twk::cli {
namespace {

constexpr int kMostDays = 36500;

std::string quoted(std::string_view text) {
  return "\"" + std::string(text) + "\"";
}

}  // namespace

base::Date read_day(platform::Clock& clock, std::string_view option, std::string_view text) {
  if (base::equals_fold(base::trim(text), "today"))
    return {std::floor(clock.now().serial)};
  const auto day = base::parse_date(text);
  if (!day) {
    throw UsageError(std::string(option) + " takes a date such as 31/12/2026 or 2026-12-31, or today, not " +
                     quoted(text));
  }
  if (*day < base::make_date({1970, 1, 1})) {
    throw UsageError(std::string(option) + " " + quoted(text) + " is " + base::format_date(*day) +
                     ", which is before 1970: write the year with four digits");
  }
  return {std::floor(day->serial)};
}

int read_days(std::string_view option, std::string_view text) {
  std::string_view digits = base::trim(text);
  int unit = 1;
  if (digits.ends_with('d') || digits.ends_with('D') || digits.ends_with('w') || digits.ends_with('W')) {
    unit = digits.ends_with('w') || digits.ends_with('W') ? 7 : 1;
    digits.remove_suffix(1);
  }
  const auto number = base::to_number(digits);
  if (!number || *number < 0 || *number > kMostDays / unit)
    throw UsageError(std::string(option) +
                     " takes a number of days such as 30d, or of weeks such as 2w, not " + quoted(text));
  return *number * unit;
}

Json moment_text(platform::Clock& clock, std::optional<base::Date> utc) {
  return utc ? Json(directory::sortable_moment(clock, *utc)) : Json(nullptr);
}

}  // namespace twk::cli
