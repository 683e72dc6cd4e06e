#pragma once

#include <cstdint>
#include <functional>
#include <string>
#include <vector>

#include "platform/account_listing.hpp"
#include "platform/directory.hpp"

namespace twk::directory {

/// The users of a WinNT domain with the fields of one list of all; the names alone where an object has no
/// such list. Raises what the directory raises.
void list_nt_users(const platform::ObjectPtr& domain,
                   const std::function<bool(const platform::ListedUser&)>& visit);

/// What a list shows of a user of a WinNT domain beside the name: full name, description, state.
struct NtUserRow {
  std::vector<std::string> texts;
  std::uint8_t marks = 0;
};
NtUserRow nt_user_row(const platform::ListedUser& user);

}  // namespace twk::directory
