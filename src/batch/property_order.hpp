#pragma once

#include <cstdint>
#include <functional>
#include <string>

#include "batch/account_change.hpp"
#include "batch/schema_properties.hpp"

namespace twk::batch {

/// The outcome for one user whose property was to change, or for one line of a file that named no user.
struct PropertyOutcome {
  std::int32_t line = 0;  ///< of the file, counted from 1; 0 for a user of the selection
  std::string user;       ///< its name in its container, or its name in the line
  std::string path;       ///< its ADsPath; empty for one that could not be read
  std::string value;      ///< as written, or as it would have been
  bool changed = false;
  bool skipped = false;  ///< the line names nobody in the list
  std::string reason;    ///< why not; empty when it was changed
};

/// What is asked of a change; bytes are comma-separated numbers, and "%UserName%" in a value is the user's
/// name in its container, in a terminal-server setting the account name.
struct PropertyOrder {
  PropertySchema property;
  bool append =
      false;  ///< one more value, of a property that takes several; otherwise in place of all others
  /// Called after each user and each skipped line; may be empty.
  std::function<void(const PropertyOutcome&)> user_done = {};
  /// Called with each change that was made; may be empty.
  std::function<void(const AccountChange& change)> changed = {};
};

/// What came of a change.
struct PropertyCounts {
  std::int32_t users = 0;  ///< changed
  std::int32_t errors = 0;
  std::int32_t skipped = 0;  ///< lines that named nobody in the list
  bool stopped = false;
  std::string failure;  ///< why it ended early; empty when it did not
};

}  // namespace twk::batch
