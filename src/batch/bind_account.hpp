#pragma once

#include "controls/list_view.hpp"
#include "platform/directory.hpp"

namespace twk::session {
struct Session;
}

namespace twk::batch {

/// The account of a row of a list of users, through the WinNT provider. Raises what the directory raises.
platform::ObjectPtr bind_account(session::Session& session, const controls::ListRow& row);
/// The account of a bound user.
platform::ObjectPtr bind_account(session::Session& session, const platform::ObjectPtr& user);

}  // namespace twk::batch
