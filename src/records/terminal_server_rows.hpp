#pragma once

#include <array>
#include <cstdint>
#include <optional>
#include <string_view>

#include "platform/network.hpp"

/// The thirteen terminal-server settings, as their table has them and as the multi-user window calls
/// them.
namespace twk::records {

struct TerminalServerRow {
  std::string_view text;
  /// The first letter "s" marks a number, any other or none a text; the last letter is the editor: "y" yes or
  /// no, "d" drive, "t" time.
  std::string_view key;
  platform::WtsConfigClass setting;
  std::string_view name;

  [[nodiscard]] bool is_number() const { return key.starts_with('s'); }
  [[nodiscard]] bool is_time() const { return key.ends_with('t'); }
};

/// In the order of the list. The text "End a Dissconnected sessions" sets the limit of connections, and
/// "Active session limit" that of disconnections: stored values keep the meaning that these rows always had.
inline constexpr std::array<TerminalServerRow, 13> kTerminalServerRows = {{
    {"User Profile Directory", "", platform::WtsConfigClass::kTerminalServerProfilePath,
     "WTSTerminalServerProfilePath"},
    {"User Home Directory", "", platform::WtsConfigClass::kTerminalServerHomeDir, "WTSTerminalServerHomeDir"},
    {"Users Home drive letter", "d6d", platform::WtsConfigClass::kTerminalServerHomeDirDrive,
     "WTSTerminalServerHomeDirDrive"},
    {"Allow logon", "s1y", platform::WtsConfigClass::kAllowLogonTerminalServer,
     "WTSAllowLogonTerminalServer"},
    {"Start Following program at logon", "s2y", platform::WtsConfigClass::kInheritInitialProgram,
     "WTSInheritInitialProgram"},
    {"Start program", "", platform::WtsConfigClass::kInitialProgram, "WTSInitialProgram"},
    {"Start in", "", platform::WtsConfigClass::kWorkingDirectory, "WTSWorkingDirectory"},
    {"Connect client drives at logon", "s3y", platform::WtsConfigClass::kDeviceClientDrives,
     "WTSDeviceClientDrives"},
    {"Connect client printers at logon", "s4y", platform::WtsConfigClass::kDeviceClientPrinters,
     "WTSDeviceClientPrinters"},
    {"Connect default client printer", "s5y", platform::WtsConfigClass::kDeviceClientDefaultPrinter,
     "WTSDeviceClientDefaultPrinter"},
    {"End a Dissconnected sessions", "s5t", platform::WtsConfigClass::kTimeoutSettingsConnections,
     "WTSTimeoutSettingsConnections"},
    {"Active session limit", "s6t", platform::WtsConfigClass::kTimeoutSettingsDisconnections,
     "WTSTimeoutSettingsDisconnections"},
    {"Idle session limit", "s7t", platform::WtsConfigClass::kTimeoutSettingsIdle, "WTSTimeoutSettingsIdle"},
}};

struct TimeWord {
  std::string_view word;
  std::uint32_t milliseconds;
};

/// The values of a time setting, "Never" first.
inline constexpr std::array<TimeWord, 11> kTimeWords = {{{"Never", 0},
                                                         {"1 min", 60000},
                                                         {"5 mins", 300000},
                                                         {"10 mins", 600000},
                                                         {"15 mins", 900000},
                                                         {"30 mins", 1800000},
                                                         {"1 hour", 3600000},
                                                         {"2 hours", 7200000},
                                                         {"3 hours", 10800000},
                                                         {"1 day", 86400000},
                                                         {"2 days", 172800000}}};

/// The time of a word, in any case, from "1 min" to "2 days"; 0 for "Never" and for any other text.
std::uint32_t milliseconds_of(std::string_view word);

/// 1 for "TRUE" and "YES" in any case, else 0.
std::uint32_t number_of_switch(std::string_view word);

}  // namespace twk::records
