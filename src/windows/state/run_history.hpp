#pragma once

#include <map>
#include <string>
#include <vector>

#include "batch/account_change.hpp"

namespace twk::windows {

/// What the runs of this session changed on accounts, as far as it can be taken back exactly.
struct RunHistory {
  /// By the key of the run's row on the log tab. A run that was taken back has none left.
  std::map<std::string, std::vector<batch::AccountChange>> changes;
};

}  // namespace twk::windows
