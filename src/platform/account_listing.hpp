#pragma once

#include <cstdint>
#include <functional>
#include <string>

namespace twk::platform {

/// A user in the list of all users of a domain.
struct ListedUser {
  std::string name;  ///< of the account
  std::string full_name;
  std::string description;
  std::int32_t flags = 0;  ///< as in "UserFlags", without the right to change the password
};

/// Containers that list their users with more than the names derive from it: the domains of WinNT. So a list
/// needs no request for each user.
class AccountListing {
 public:
  virtual ~AccountListing() = default;
  /// All users, computers left out, until `visit` returns False. Of a server that tells the names alone they
  /// have nothing else. Raises what `enumerate` raises.
  virtual void list_users(const std::function<bool(const ListedUser&)>& visit) = 0;
};

}  // namespace twk::platform
