#pragma once

#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "platform/platform.hpp"

/// Whose hours a week of logon hours shows. The directory keeps hours of UTC. The grid and its text form are
/// 12 hours ahead of that, wherever the workstation stands, unless the administrator chose otherwise.
namespace twk::windows {

enum class HoursZone { kFixed, kWorkstation };

/// As it is stored and typed: "UTC+12" and "Workstation".
std::string_view zone_word(HoursZone zone);
/// The zone of a word, in any case; none for another word.
std::optional<HoursZone> zone_of_word(std::string_view word);

/// The administrator's choice, `LogonHoursZone` of the preferences; none while nobody has chosen.
std::optional<HoursZone> chosen_zone(const platform::Platform& services);
/// The zone in force: the choice, or the fixed one.
HoursZone zone_in_force(const platform::Platform& services);
/// Keeps the choice; False when it cannot be stored.
bool choose_zone(const platform::Platform& services, HoursZone zone);

/// Whole hours that a zone is ahead of UTC, that of the workstation as its clocks stand today. Where they are
/// half an hour off, rounded down: an hour of the grid then begins that much later on those clocks.
int hours_ahead(const platform::Platform& services, HoursZone zone);
/// "UTC+12", "UTC-8, the zone of this workstation", "UTC+5:30, …".
std::string zone_name(const platform::Platform& services, HoursZone zone);
/// What one should know of hours of that zone: summer time and zones that are not whole hours. Empty for the
/// fixed zone.
std::string zone_note(const platform::Platform& services, HoursZone zone);

/// "Monday 7am to 6pm, as hours of UTC+12, is Sunday 7pm to Monday 6am UTC; as hours of …": what the first
/// permitted stretch means in either zone. Empty when all hours mean the same in both, as "always" does.
std::string two_readings(const platform::Platform& services, const std::vector<bool>& cells);

}  // namespace twk::windows
