#include "directory/hours_zone.hpp"

#include <cstdlib>

#include "base/text.hpp"
#include "directory/hours_of_week.hpp"
#include "session/settings.hpp"

namespace twk::directory {
namespace {

constexpr int kCellsOfWeek = kDays * kHours;
constexpr std::string_view kSetting = "LogonHoursZone";

std::string preferences_key() {
  return std::string(session::kTree) + "\\" + std::string(session::kPreferences);
}

/// Minutes by which clocks here are ahead of UTC today.
int minutes_ahead(platform::Clock& clock) {
  constexpr std::int64_t kFiletimePerMinute = 600'000'000;
  const base::Date utc = clock.utc_now();
  return static_cast<int>((base::to_filetime(clock.to_local(utc)) - base::to_filetime(utc)) /
                          kFiletimePerMinute);
}

int wrapped(int cell) {
  return (cell % kCellsOfWeek + kCellsOfWeek) % kCellsOfWeek;
}

/// A run of permitted hours; it may continue from Saturday into Sunday.
struct Stretch {
  int first = 0;
  int count = 0;
};

Stretch first_stretch(const std::vector<bool>& cells) {
  const auto is_on = [&](int cell) { return cells.at(static_cast<std::size_t>(wrapped(cell))); };
  int first = 0;
  while (first < kCellsOfWeek && (!is_on(first) || is_on(first - 1)))
    ++first;
  int count = 0;
  while (count < kCellsOfWeek && is_on(first + count))
    ++count;
  return {wrapped(first), count};
}

/// "Monday 7am to 6pm", "Sunday 7pm to Monday 6am".
std::string name_of(const Stretch& hours) {
  const int end = hours.first + hours.count;
  const int first_day = hours.first / kHours;
  const bool one_day = (end - 1) / kHours == first_day;
  const auto day = [](int cell) { return std::string(day_name(wrapped(cell) / kHours + 1)); };
  return day(hours.first) + " " + hour_name(hours.first % kHours) + " to " + (one_day ? "" : day(end) + " ") +
         hour_name(end % kHours);
}

}  // namespace

std::string_view zone_word(HoursZone zone) {
  return zone == HoursZone::kFixed ? "UTC+12" : "Workstation";
}

std::optional<HoursZone> zone_of_word(std::string_view word) {
  for (const HoursZone zone : {HoursZone::kFixed, HoursZone::kWorkstation}) {
    if (base::equals_fold(word, zone_word(zone)))
      return zone;
  }
  return std::nullopt;
}

std::optional<HoursZone> chosen_zone(const platform::Platform& services) {
  std::string word;
  services.registry.Reg_Read(platform::kHiveLocalMachine, preferences_key(), kSetting, word);
  return zone_of_word(word);
}

HoursZone zone_in_force(const platform::Platform& services) {
  return chosen_zone(services).value_or(HoursZone::kFixed);
}

bool choose_zone(const platform::Platform& services, HoursZone zone) {
  return services.registry.Reg_Write(platform::kHiveLocalMachine, preferences_key(), kSetting,
                                     zone_word(zone));
}

int hours_ahead(const platform::Platform& services, HoursZone zone) {
  if (zone == HoursZone::kFixed)
    return kFixedHoursAhead;
  const int minutes = minutes_ahead(services.clock);
  return (minutes - (minutes % 60 + 60) % 60) / 60;
}

std::string zone_name(const platform::Platform& services, HoursZone zone) {
  if (zone == HoursZone::kFixed)
    return std::string(zone_word(zone));
  const int minutes = minutes_ahead(services.clock);
  const int rest = std::abs(minutes) % 60;
  return std::string("UTC") + (minutes < 0 ? "-" : "+") + base::to_text(std::abs(minutes) / 60) +
         (rest == 0 ? "" : ":" + base::to_text(rest, 2)) + ", the zone of this workstation";
}

std::string zone_note(const platform::Platform& services, HoursZone zone) {
  if (zone == HoursZone::kFixed)
    return {};
  const int rest = (minutes_ahead(services.clock) % 60 + 60) % 60;
  std::string note = "What is stored stays the same when clocks change for summer time; what is shown moves.";
  if (rest != 0)
    note += " Each hour shown begins " + base::to_text(rest) +
            " minutes later, because UTC is stored by whole hours.";
  return note;
}

std::string two_readings(const platform::Platform& services, const std::vector<bool>& cells) {
  const int fixed = hours_ahead(services, HoursZone::kFixed);
  const int here = hours_ahead(services, HoursZone::kWorkstation);
  if (bytes_of_cells(cells, fixed) == bytes_of_cells(cells, here))
    return {};
  const Stretch shown = first_stretch(cells);
  const auto in_utc = [&](int ahead) {
    return name_of({wrapped(shown.first - ahead), shown.count}) + " UTC";
  };
  return name_of(shown) + ", as hours of " + zone_name(services, HoursZone::kFixed) + ", is " +
         in_utc(fixed) + "; as hours of " + zone_name(services, HoursZone::kWorkstation) + ", it is " +
         in_utc(here);
}

}  // namespace twk::directory
