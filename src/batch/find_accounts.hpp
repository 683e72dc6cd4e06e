#pragma once

#include <cstddef>
#include <functional>
#include <optional>
#include <string>
#include <string_view>

#include "base/dates.hpp"
#include "controls/list_view.hpp"
#include "platform/directory.hpp"

namespace twk::session {
struct Session;
}

/// Searches the list of users for accounts that need attention. Expiry and locks are read through the
/// WinNT provider in every kind of domain.
namespace twk::batch {

/// Moves every account that expires on a day before that of `Expiredate` into the selection.
void Find_Expired_Accounts(session::Session& session);
/// The first press moves every locked account into the selection; the next one, while `Unlock_Stage` is set,
/// unlocks the selection.
void Find_Locked_Accounts(session::Session& session);

/// True when an account ends on a day here that is before that of `limit`. Raises what the directory raises.
bool expires_before(session::Session& session, const platform::ObjectPtr& account, base::Date limit);

/// Checks each row of the list of users, from the last to the first, and moves the hits into the selection, a
/// fiftieth of the list at a time. False when `goes_on`, called after each row, ended it. `found` gets the
/// number of hits. A row that cannot be read is not a hit.
bool find_accounts(session::Session& session, const std::function<bool(const platform::ObjectPtr&)>& is_hit,
                   const std::function<bool()>& goes_on, std::size_t& found);

}  // namespace twk::batch
