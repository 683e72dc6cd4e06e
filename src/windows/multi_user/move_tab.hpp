#pragma once

#include "lifecycle/move/move_order.hpp"

namespace twk::session {
struct Session;
}

namespace twk::windows {

/// What the "Move Users" tab and the preferences ask for.
lifecycle::MoveOrder move_order(const session::Session& session);

/// The button of the tab: starts the run over the selection, and while it is running stops it after the
/// current user.
void btn_MoveUser_Click(session::Session& session);

}  // namespace twk::windows
