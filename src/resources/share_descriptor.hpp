#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <vector>

#include "platform/security_descriptor.hpp"

namespace twk::session {
struct Session;
}

namespace twk::resources {

/// An account's rights to a share, before the account is looked up.
struct AccessEntry {
  std::string account;
  bool well_known = false;  ///< "World", which needs no look-up
  std::uint8_t aceFlags = 0;
  std::uint8_t aceType = platform::ace_type::kAllow;
  std::uint32_t mask = 0;
  std::optional<platform::Sid> sid;  ///< looked up when there is none
};

/// "World" with that mask.
AccessEntry world_entry(std::uint32_t mask);

/// Looks up the entries' accounts and drops the entries of those that are not found, which is logged. Returns
/// the names of these.
std::vector<std::string> drop_unknown(session::Session& session, std::vector<AccessEntry>& entries);

/// Puts an entry at the end of a list. Raises kAllottedSpaceExceeded.
void AddAccessEntry(platform::Acl& acl, std::uint8_t aceType, std::uint8_t aceFlags, std::uint32_t mask,
                    const platform::Sid& sid);

/// A descriptor whose list holds the entries that deny, then those of `oldDescriptor` (null for none) that
/// are not inherited and concern no account named here, then the entries that allow; it has no spare room.
/// None when an account is not found, which is logged, or when the list would be too long.
std::optional<platform::SecurityDescriptor> BuildShareDescriptor(
    session::Session& session, const platform::SecurityDescriptor* oldDescriptor,
    std::vector<AccessEntry> entries);

}  // namespace twk::resources
