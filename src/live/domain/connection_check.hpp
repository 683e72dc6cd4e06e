#pragma once

#include <functional>
#include <string>
#include <vector>

#include "live/terms/check_step.hpp"
#include "live/terms/live_settings.hpp"
#include "live/terms/prompts.hpp"

namespace twk::live {

/// Checks everything that a logon to the domain needs, and reports each step as it ends. A step that needs
/// one that failed is skipped. The last one checks whether the account may create users below `place`, a
/// distinguished name; empty for a new domain's default container. Writes nothing. Raises only what `tell`
/// and the prompts raise.
std::vector<CheckStep> check_connection(const LiveSettings& settings, const Prompts& prompts,
                                        const std::string& place,
                                        const std::function<void(const CheckStep&)>& tell);

}  // namespace twk::live
