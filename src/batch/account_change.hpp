#pragma once

#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "records/json_line.hpp"

namespace twk::batch {

/// What a run changed on one account, so that it can be taken back.
struct AccountChange {
  enum class Kind { kEnabled, kDisabled, kJoined, kLeft, kMoved, kSet };

  Kind kind = Kind::kEnabled;
  std::string sid;  ///< of the account, "S-1-5-21-…"
  std::string
      what;  ///< the path of the group that was joined or left, the name of the former unit, the attribute
  /// The values of the attribute, bytes as "1,2,255". Both empty: it can be written but not read.
  std::vector<std::string> before = {};
  std::vector<std::string> after = {};  ///< also the new unit of one that was moved
};

/// Adds it to an entry of a run's record: "change" with the word of the kind, "sid", "what", and the values,
/// if any, as "before1", "before2" …, "after1" ….
void add_change(records::JsonLine& entry, const AccountChange& change);
/// None for an entry that is no change.
std::optional<AccountChange> change_of(const records::JsonLine& entry);

}  // namespace twk::batch
