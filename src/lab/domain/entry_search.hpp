#pragma once

#include <string>
#include <vector>

#include "lab/domain/lab_domain.hpp"
#include "lab/store/filter.hpp"
#include "platform/query.hpp"

namespace twk::lab {

/// An entry that a search found. `entry` is valid until the store is written or refreshed.
struct FoundEntry {
  const Entry* entry = nullptr;
  std::string dn;
};

/// The entries in the scope below `base_dn` for which the filter holds, in the directory's order. A short
/// class name as the value of "objectCategory" means its category ("organizationalUnit", "domain").
std::vector<FoundEntry> search_entries(const LabDomain& domain, const std::string& base_dn,
                                       platform::Scope scope, Filter filter);

/// Orders them by the first value of an attribute, without regard to case; those without one come first.
void sort_by_attribute(const LabDomain& domain, std::vector<FoundEntry>& found, std::string_view attribute);

}  // namespace twk::lab
