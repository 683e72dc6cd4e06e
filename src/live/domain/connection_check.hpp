#pragma once

#include <functional>
#include <string>
#include <vector>

#include "live/terms/check_step.hpp"
#include "live/terms/live_settings.hpp"
#include "live/terms/prompts.hpp"

namespace twk::live {

/// Checks everything that a logon to the domain needs, and reports each step as it ends. A step that needs
/// one that failed is skipped, and so is what is left when `prompts` say to stop. Writes nothing. Raises only
/// what `tell` and the prompts raise.
std::vector<CheckStep> check_connection(const LiveSettings& settings, const Prompts& prompts,
                                        const CheckedPlace& place,
                                        const std::function<void(const CheckStep&)>& tell);

}  // namespace twk::live
