#pragma once

#include <string_view>

#include "live/domain/live_domain.hpp"
#include "platform/network.hpp"

/// Terminal-server settings of the domain's users, kept in "userParameters" as platform/user_parameters.hpp
/// describes. A user is found by account name, on the controller `server`.
namespace twk::live {

/// Raises kUserNotFound, kBadNetPath, and what `platform::wts_setting` raises.
platform::WtsConfigValue query_terminal_setting(LiveDomain& domain, std::string_view server,
                                                std::string_view user, platform::WtsConfigClass setting);
/// Changes one setting. Raises kUserNotFound, kBadNetPath, and what `platform::set_wts_setting` raises;
/// the user is then unchanged.
void set_terminal_setting(LiveDomain& domain, std::string_view server, std::string_view user,
                          platform::WtsConfigClass setting, const platform::WtsConfigValue& value);
/// Raises what that would raise for the user, the value, or want of a right; changes nothing.
void foresee_terminal_setting(LiveDomain& domain, std::string_view server, std::string_view user,
                              platform::WtsConfigClass setting, const platform::WtsConfigValue& value);

}  // namespace twk::live
