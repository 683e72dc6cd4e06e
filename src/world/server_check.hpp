#pragma once

#include <functional>
#include <vector>

#include "live/terms/check_step.hpp"
#include "world/world.hpp"

namespace twk::world {

/// Looks at each file server that a site of the database names, a step each: whether it lets the person log
/// on and read its shares, and whether the drives, folders and shares are there that the templates need.
/// Writes nothing. Raises only what `tell` raises.
std::vector<live::CheckStep> check_servers(World& world,
                                           const std::function<void(const live::CheckStep&)>& tell);

}  // namespace twk::world
