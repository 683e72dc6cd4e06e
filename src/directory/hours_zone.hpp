#pragma once

#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "platform/platform.hpp"

/// The time zone in which logon hours are shown. The directory stores them in UTC. The grid and its text form
/// are 12 hours ahead of that, wherever the workstation is, unless the administrator chose otherwise.
namespace twk::directory {

enum class HoursZone { kFixed, kWorkstation };

/// As stored and typed: "UTC+12" and "Workstation".
std::string_view zone_word(HoursZone zone);
/// The zone of a word, in any case; none for another word.
std::optional<HoursZone> zone_of_word(std::string_view word);

/// The administrator's choice, `LogonHoursZone` of the preferences; none until someone chooses.
std::optional<HoursZone> chosen_zone(const platform::Platform& services);
/// The zone in force: the choice, or the fixed one.
HoursZone zone_in_force(const platform::Platform& services);
/// Stores the choice; False when that fails.
bool choose_zone(const platform::Platform& services, HoursZone zone);

/// Whole hours by which a zone is ahead of UTC; the workstation's as of today. Rounded down when there is
/// half an hour more: an hour of the grid then begins that much later on those clocks.
int hours_ahead(const platform::Platform& services, HoursZone zone);
/// "UTC+12", "UTC-8, the zone of this workstation", "UTC+5:30, …".
std::string zone_name(const platform::Platform& services, HoursZone zone);
/// What a person should know about hours of that zone: summer time and zones that are not whole hours. Empty
/// for the fixed zone.
std::string zone_note(const platform::Platform& services, HoursZone zone);

/// "Monday 7am to 6pm, as hours of UTC+12, is Sunday 7pm to Monday 6am UTC; as hours of …": what the first
/// permitted stretch means in either zone. Empty when all hours mean the same in both, as "always" does.
std::string two_readings(const platform::Platform& services, const std::vector<bool>& cells);

}  // namespace twk::directory
