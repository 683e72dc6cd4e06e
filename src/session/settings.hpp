#pragma once

#include <string>
#include <string_view>

#include "session/session.hpp"

/// The settings tree: strings below "Software\Oxbrook\TWK", a sub-key per concern.
namespace twk::session {

inline constexpr std::string_view kTree = "Software\\Oxbrook\\TWK";

inline constexpr std::string_view kSetup = "Setup";
inline constexpr std::string_view kPreferences = "Preferences";
inline constexpr std::string_view kUM = "UM";
inline constexpr std::string_view kMail = "Mail";
inline constexpr std::string_view kADO = "ADO";
inline constexpr std::string_view kDU = "DU";
inline constexpr std::string_view kCustom = "Custom";
/// How a real domain is reached; see `world/connection_options.hpp`.
inline constexpr std::string_view kLive = "Live";
inline constexpr std::string_view kVersion = "Version";

/// The generation of the data files that this program writes.
inline constexpr std::string_view kDataVersion = "2.4";

/// The value as it stands, empty when there is none; `LastRegResult` tells the two apart.
std::string read_setting(Session& session, std::string_view sub_key, std::string_view name,
                         std::uint32_t hive = platform::kHiveLocalMachine);
/// A write that fails is reported to nobody but `LastRegResult`.
void write_setting(Session& session, std::string_view sub_key, std::string_view name, std::string_view value,
                   std::uint32_t hive = platform::kHiveLocalMachine);
/// Stores "Yes" or "No".
void write_yes_no(Session& session, std::string_view sub_key, std::string_view name, bool value);

/// Start-up's reading of the settings into the session's values and the controls, in the order in which they
/// depend on each other; writes `DBVersion` when the installation is fresh. Shows the test fields of the name
/// formats, the custom commands of the tree's popup menu and the custom attributes.
void read_settings(Session& session);

/// The labels and boxes of the four custom attributes; those whose display name is not set, or
/// is empty, are hidden.
void show_custom_fields(Session& session);
/// `txtAdmin` and `txtPassword` can be filled while `Mail_Logon` is unticked.
void show_mail_credentials(Session& session);

}  // namespace twk::session
