#pragma once

#include <filesystem>
#include <functional>
#include <vector>

#include "live/terms/check_step.hpp"
#include "platform/dialogs.hpp"

namespace twk::world {

/// Looks at all of a lab: its configuration, the directory with its journal, the settings, the Exchange
/// directories, the file servers with their drives and the folders of their shares, and whether the sites and
/// templates of its database name servers and groups that exist. Nothing is changed but what opening a lab
/// repairs, which is a warning. What depends on a step that failed is skipped.
std::vector<live::CheckStep> check_lab(const std::filesystem::path& folder, platform::Dialogs& dialogs,
                                       const std::function<void(const live::CheckStep&)>& tell);

}  // namespace twk::world
