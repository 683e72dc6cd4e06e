#pragma once

#include "live/live.hpp"
#include "live/logon/credentials.hpp"
#include "world/connection_options.hpp"
#include "world/ground.hpp"

namespace twk::world {

/// Raises when the person's settings cannot be read or understood; the text names file and line.
void require_settings(const live::Folders& folders);
/// The person's stored settings of the connection. Raises in the same case.
ConnectionOptions stored_connection(const live::Folders& folders);
/// False when they cannot be written.
bool store_connection(const live::Folders& folders, const ConnectionOptions& options);
/// The stored settings overridden by the given ones; if neither names a domain, the workstation's.
ConnectionOptions wanted_connection(const live::Folders& folders, const ConnectionOptions& given);

/// The unit that the person's work is limited to, where new accounts go; empty for the whole domain.
std::string stored_unit(const live::Folders& folders);

/// The domain is not queried yet. Options that `live_settings` refuses make a world that cannot be connected,
/// in which settings can be corrected.
std::unique_ptr<Ground> make_live_ground(const ConnectionOptions& options, live::Prompts prompts,
                                         const live::Folders& folders);

}  // namespace twk::world
