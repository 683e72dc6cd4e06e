#pragma once

#include <cstddef>
#include <cstdint>
#include <optional>
#include <set>
#include <span>
#include <string>
#include <string_view>
#include <vector>

#include "platform/directory.hpp"

namespace twk::session {
struct Session;
}

namespace twk::groups {

/// What is known of an account before its groups are changed.
struct Memberships {
  std::set<std::string> groups;  ///< by `group_identity`, the primary one excepted
  std::int32_t primary = 0;      ///< the identifier of that one within the domain
  std::string sid;               ///< "S-1-5-21-…"; empty when it cannot be read
};

/// What tells a group from the others: its distinguished name in capitals, in a WinNT domain its name. Takes
/// its path or that name.
std::string group_identity(const session::Session& session, std::string_view group);

/// By one look-up, however many groups there are.
Memberships read_memberships(const session::Session& session, const platform::ObjectPtr& account);

/// The attributes of an account of an Active Directory domain that tell them, and what their values say.
std::vector<std::string> membership_attributes();
Memberships memberships_of(std::span<const platform::Value> values);

/// Those of many accounts of an Active Directory domain, given by their paths, twenty by one search. None
/// for an account that was not found in this way: binding it says why.
std::vector<std::optional<Memberships>> read_memberships(const session::Session& session,
                                                         std::span<const std::string> paths);

}  // namespace twk::groups
