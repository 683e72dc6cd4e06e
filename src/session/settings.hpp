#pragma once

#include <string>
#include <string_view>

#include "session/session.hpp"

/// The settings tree: strings below "Software\Oxbrook\TWK", a sub-key for each area.
namespace twk::session {

inline constexpr std::string_view kTree = "Software\\Oxbrook\\TWK";

inline constexpr std::string_view kSetup = "Setup";
inline constexpr std::string_view kPreferences = "Preferences";
inline constexpr std::string_view kUM = "UM";
inline constexpr std::string_view kMail = "Mail";
inline constexpr std::string_view kADO = "ADO";
inline constexpr std::string_view kDU = "DU";
inline constexpr std::string_view kCustom = "Custom";
/// How to reach a real domain; see `world/connection_options.hpp`.
inline constexpr std::string_view kLive = "Live";
inline constexpr std::string_view kVersion = "Version";

/// The generation of the data files that this program writes.
inline constexpr std::string_view kDataVersion = "2.4";

/// The value as stored, empty when there is none; `LastRegResult` distinguishes the two.
std::string read_setting(Session& session, std::string_view sub_key, std::string_view name,
                         std::uint32_t hive = platform::kHiveLocalMachine);
/// Only `LastRegResult` reports a write that fails.
void write_setting(Session& session, std::string_view sub_key, std::string_view name, std::string_view value,
                   std::uint32_t hive = platform::kHiveLocalMachine);
/// Stores "Yes" or "No".
void write_yes_no(Session& session, std::string_view sub_key, std::string_view name, bool value);

}  // namespace twk::session
