#pragma once

#include <functional>
#include <string>
#include <string_view>

#include "platform/query.hpp"
#include "session/run_lookups.hpp"

namespace twk::session {
struct Session;
}

/// Questions that each line of a run asks about the whole domain. The first few are asked one by one; when
/// more follow, one search reads what all of them ask for. What other programs change after it is not seen.
namespace twk::directory {

/// Which values: those of an attribute of the objects that a search finds, and whose they are.
struct ValuesWanted {
  std::string base;  ///< an ADsPath
  std::string filter;
  std::string attribute;
  std::string owner;  ///< an attribute that names the owner; empty for none
  platform::Scope scope = platform::Scope::kSubtree;
};

/// Counts the question. `kAsk` while there were few, for values that the directory compares by its own rules,
/// and when the search failed. `wanted` is called for the search.
session::KnownValues::Answer find_value(session::Session& session, session::ReadOnce& known,
                                        const std::function<ValuesWanted()>& wanted, std::string_view value);

}  // namespace twk::directory
