#pragma once

#include "live/live.hpp"
#include "live/logon/credentials.hpp"
#include "world/connection_options.hpp"
#include "world/ground.hpp"

namespace twk::world {

/// Raises when the person's settings cannot be read or understood; the text names file and line.
void require_settings(const live::Folders& folders);
/// The person's stored settings of the connection. Raises likewise.
ConnectionOptions stored_connection(const live::Folders& folders);
/// False when they cannot be written.
bool store_connection(const live::Folders& folders, const ConnectionOptions& options);
/// Those with what is given over them; where neither names a domain, the one that the workstation is in.
ConnectionOptions wanted_connection(const live::Folders& folders, const ConnectionOptions& given);

/// The unit that the person's work is limited to, where new accounts go; empty for the whole domain.
std::string stored_unit(const live::Folders& folders);

/// Nothing is asked of the domain yet. Options that `live_settings` refuses make a world that cannot be
/// connected, in which settings can be mended.
std::unique_ptr<Ground> make_live_ground(const ConnectionOptions& options, live::Prompts prompts,
                                         const live::Folders& folders);

}  // namespace twk::world
