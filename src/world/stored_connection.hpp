#pragma once

#include <string>

#include "live/terms/user_folders.hpp"
#include "world/connection_options.hpp"

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

}  // namespace twk::world
