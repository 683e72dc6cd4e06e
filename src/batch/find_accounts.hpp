#pragma once

#include <cstddef>
#include <functional>

#include "base/dates.hpp"
#include "controls/list_view.hpp"
#include "platform/directory.hpp"

namespace twk::session {
class RunView;
struct Session;
}  // namespace twk::session

/// Searches the list of users for accounts that need attention. Expiry and locks are read through the
/// WinNT provider in every kind of domain.
namespace twk::batch {

/// True when an account ends on a day here that is before that of `limit`. Raises what the directory raises.
bool expires_before(session::Session& session, const platform::ObjectPtr& account, base::Date limit);

/// Checks each row of the list of users, from the last to the first, and moves the hits into the selection, a
/// fiftieth of the list at a time. False when the run was stopped after a row. `found` gets the number of
/// hits. A row that cannot be read is not a hit.
bool find_accounts(session::Session& session, const std::function<bool(const platform::ObjectPtr&)>& is_hit,
                   session::RunView& view, std::size_t& found);

}  // namespace twk::batch
