#pragma once

#include <filesystem>
#include <functional>

#include "world/ground.hpp"

namespace twk::world {

/// Raises what `lab::Lab` raises; `warn` gets a message about repairs.
std::unique_ptr<Ground> make_lab_ground(const std::filesystem::path& folder,
                                        const std::function<void(const std::string&)>& warn);

}  // namespace twk::world
