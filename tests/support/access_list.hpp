#pragma once

#include <optional>
#include <vector>

#include "platform/security_descriptor.hpp"

namespace twk::test {

/// A descriptor whose list has these entries.
inline platform::SecurityDescriptor with_list(const std::vector<platform::Ace>& entries,
                                              const std::optional<platform::Sid>& owner = std::nullopt) {
  platform::Acl list(4096);
  for (const platform::Ace& ace : entries)
    list.add(platform::Acl::kAtEnd, ace);
  platform::SecurityDescriptor descriptor;
  descriptor.owner = owner;
  descriptor.set_dacl(list.trimmed());
  return descriptor;
}

}  // namespace twk::test
