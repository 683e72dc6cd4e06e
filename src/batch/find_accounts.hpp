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

/// Looks through the list of users for accounts that need something. Expiry and locks are read through the
/// WinNT provider in every kind of domain.
namespace twk::batch {

/// Takes every account whose expiry lies on a day before that of `Expiredate` into the selection.
void Find_Expired_Accounts(session::Session& session);
/// The first time takes every account that is locked into the selection; the time after that, while
/// `Unlock_Stage` is set, unlocks what stands in the selection.
void Find_Locked_Accounts(session::Session& session);

/// True when an account ends on a day here that is before that of `limit`. Raises what the directory raises.
bool expires_before(session::Session& session, const platform::ObjectPtr& account, base::Date limit);

/// Looks at each row of the list of users, from the last to the first, and takes the hits into the selection,
/// a fiftieth of the list at a time. False when `goes_on`, asked after each row, ended it. `found` gets the
/// number of hits. A row that cannot be read is no hit.
bool find_accounts(session::Session& session, const std::function<bool(const platform::ObjectPtr&)>& is_hit,
                   const std::function<bool()>& goes_on, std::size_t& found);

}  // namespace twk::batch
