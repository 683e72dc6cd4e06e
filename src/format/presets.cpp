#include "format/presets.hpp"

#include <array>

#include "base/text.hpp"
#include "session/settings.hpp"

namespace twk::format {
namespace {

using session::Session;

constexpr std::array<std::string_view, kAccountFormats - 1> kAccountPresets = {
    "%last%#1%first%", "%first%#1%last%", "1%first%%last%", "%first%%last%"};
constexpr std::array<std::string_view, kFullNameFormats - 1> kFullNamePresets = {
    "%First% %Middle% %Last%", "%First% %Last%", "%Last% %First%"};

/// What a fresh installation chooses.
constexpr int kFirstAccountEntry = 2;
constexpr int kFirstFullNameEntry = 0;

template <std::size_t Count>
std::string_view preset(const std::array<std::string_view, Count>& formats, int entry) {
  const auto place = static_cast<std::size_t>(entry);
  return place < Count ? formats[place] : std::string_view();
}

/// A stored number, counted from 1; 0 for none.
int stored_number(Session& session, std::string_view sub_key, std::string_view name) {
  return base::to_number(session::read_setting(session, sub_key, name)).value_or(0);
}

int entry_of(int number, int entries, int otherwise) {
  return number >= 1 && number <= entries ? number - 1 : otherwise;
}

std::string format_in_force(const std::string& stored, bool chosen, std::string_view preset) {
  return (stored.empty() || chosen) && !preset.empty() ? std::string(preset) : stored;
}

}  // namespace

std::string_view account_preset(int entry) {
  return preset(kAccountPresets, entry);
}

std::string_view full_name_preset(int entry) {
  return preset(kFullNamePresets, entry);
}

int stored_account_entry(Session& session) {
  return entry_of(stored_number(session, session::kSetup, "UserFormat"), kAccountFormats, kFirstAccountEntry);
}

int stored_full_name_entry(Session& session) {
  return entry_of(stored_number(session, session::kPreferences, "FullName"), kFullNameFormats,
                  kFirstFullNameEntry);
}

std::string stored_account_format(Session& session) {
  return format_in_force(session::read_setting(session, session::kSetup, "SetupID"),
                         stored_number(session, session::kSetup, "UserFormat") > 0,
                         account_preset(stored_account_entry(session)));
}

std::string stored_full_name_format(Session& session) {
  return format_in_force(session::read_setting(session, session::kPreferences, "Custom_FN"),
                         stored_number(session, session::kPreferences, "FullName") > 0,
                         full_name_preset(stored_full_name_entry(session)));
}

}  // namespace twk::format
