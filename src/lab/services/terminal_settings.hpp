#pragma once

#include <string_view>

#include "lab/domain/lab_domain.hpp"
#include "platform/network.hpp"

/// Terminal-server settings of the domain's users, kept in the attribute "userParameters" of their entries as
/// platform/user_parameters.hpp describes. A user is found by account name.
namespace twk::lab {

/// Raises kUserNotFound, and what `platform::wts_setting` raises.
platform::WtsConfigValue query_terminal_setting(LabDomain& domain, std::string_view user,
                                                platform::WtsConfigClass setting);
/// Changes one setting, even when another program changes another setting of the same user at that moment.
/// Raises kUserNotFound, and what `platform::set_wts_setting` raises; the user is then unchanged.
void set_terminal_setting(LabDomain& domain, std::string_view user, platform::WtsConfigClass setting,
                          const platform::WtsConfigValue& value);

}  // namespace twk::lab
