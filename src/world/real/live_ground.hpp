#pragma once

#include <memory>
#include <optional>

#include "base/errors.hpp"
#include "live/terms/live_settings.hpp"
#include "live/terms/prompts.hpp"
#include "live/terms/user_folders.hpp"
#include "world/ground.hpp"

namespace twk::world {

/// As `RealDomains::make_ground`.
std::unique_ptr<Ground> make_live_ground(live::LiveSettings settings, live::Prompts prompts,
                                         const live::Folders& folders,
                                         std::optional<base::RuntimeError> refusal);

}  // namespace twk::world
