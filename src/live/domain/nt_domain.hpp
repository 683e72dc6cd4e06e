#pragma once

#include <string>

#include "live/domain/live_domain.hpp"
#include "platform/directory.hpp"

/// "WinNT://" paths of an NT4-style domain, which has no directory: its controller's account service answers.
namespace twk::live {

/// The domain as a flat container of users, global groups and local groups. `name` is its name in paths.
platform::ObjectPtr bind_nt_domain(LiveDomain& domain, const std::string& name);

}  // namespace twk::live
