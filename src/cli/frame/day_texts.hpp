#pragma once

#include <optional>
#include <string>
#include <string_view>

#include "base/dates.hpp"
#include "cli/terminal/json.hpp"
#include "platform/clock.hpp"

/// Days and moments as a person types and reads them.
namespace twk::cli {

/// "today", "31/12/2026", "2026-12-31": that day here, without a time. Raises `UsageError` with the option's
/// name.
base::Date read_day(platform::Clock& clock, std::string_view option, std::string_view text);
/// "30d", "2w", "30": a number of days from 0 to 36500. Raises `UsageError` with the option's name.
int read_days(std::string_view option, std::string_view text);

/// "2026-12-31 09:05:00", what clocks here show; nothing for no moment.
Json moment_text(platform::Clock& clock, std::optional<base::Date> utc);

}  // namespace twk::cli
