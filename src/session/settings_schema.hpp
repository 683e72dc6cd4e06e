#pragma once

#include <string>
#include <string_view>
#include <vector>

/// Which settings there are and what their readers take. A reader passes over what it does not take in
/// silence, so who writes a setting for a person asks here first.
namespace twk::session {

/// "Setup\IncNumber" and all the others.
std::vector<std::string> setting_names();
bool is_setting(std::string_view sub_key, std::string_view name);
/// What the setting takes instead of the value: "a number from 0 to 32767"; empty when its reader takes it,
/// as every reader does an empty one. Of a setting that there is.
std::string setting_refusal(std::string_view sub_key, std::string_view name, std::string_view value);

}  // namespace twk::session
