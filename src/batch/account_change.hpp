#pragma once

#include <string>
#include <string_view>

namespace twk::batch {

/// What a run changed on one account, so that it can be taken back.
struct AccountChange {
  enum class Kind { kEnabled, kDisabled, kJoined, kLeft, kMoved };

  Kind kind = Kind::kEnabled;
  std::string sid;   ///< of the account, "S-1-5-21-…"
  std::string what;  ///< the path of the group that was joined or left, the name of the former unit
};

}  // namespace twk::batch
