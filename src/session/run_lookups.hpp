#pragma once

#include <cstdint>
#include <map>
#include <optional>
#include <string>

#include "platform/directory.hpp"
#include "session/known_values.hpp"
#include "session/name_prefixes.hpp"

namespace twk::session {

/// Values that are asked for one by one at first, and read at once when more questions follow.
struct ReadOnce {
  std::int32_t questions = 0;
  std::optional<KnownValues> values;
};

/// What the lines of a run look up, kept so that a run of many lines asks for it once.
struct RunLookups {
  ReadOnce persons;     ///< values of the attribute by which people are recognised
  ReadOnce accounts;    ///< account names of the domain
  ReadOnce principals;  ///< principal names of the forest
  ReadOnce neighbours;  ///< the names in the container of the new accounts
  std::map<std::string, platform::ObjectPtr> bound;  ///< containers and groups, by their paths
  NamePrefixes foreseen_in_tree;   ///< what the tree would show of a rehearsal's accounts, in upper case
  std::string foreseen_container;  ///< what follows each of those in the keys of the tree, in upper case
};

}  // namespace twk::session
