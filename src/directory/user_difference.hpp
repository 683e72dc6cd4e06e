#pragma once

#include <string>
#include <vector>

#include "directory/account_fields.hpp"

namespace twk::directory {

/// Where two accounts differ.
struct Difference {
  std::string what;   ///< the name of an attribute, "ou" or "group"
  std::string first;  ///< several values with semicolons between; empty for none
  std::string second;
};

/// The units, each group that only one of them is in, then the attributes by name. Attributes that are an
/// account's own by nature (identifiers, names of the entry, times and counts of the server) are left out
/// unless `with_own`.
std::vector<Difference> user_differences(const AccountDomain& domain, const platform::ObjectPtr& first,
                                         const platform::ObjectPtr& second, bool with_own);

}  // namespace twk::directory
