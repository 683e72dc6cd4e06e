#pragma once

#include <string_view>

namespace twk::cli {

/// The program's exit codes. The first three are the lights of the log tab, the others those of
/// <sysexits.h> that apply.
inline constexpr int kExitGreen = 0;
inline constexpr int kExitYellow = 1;
inline constexpr int kExitRed = 2;
inline constexpr int kExitUsage = 64;
inline constexpr int kExitBadData = 65;
inline constexpr int kExitFault = 70;
inline constexpr int kExitNotPermitted = 77;

/// The exit code of a light; anything else counts as RED.
int exit_code_of_light(std::string_view light);

}  // namespace twk::cli
