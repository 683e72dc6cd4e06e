#pragma once

#include "lifecycle/move/move_order.hpp"

namespace twk::windows {

struct Desktop;

/// What the "Move Users" tab and the preferences ask for.
lifecycle::MoveOrder move_order(const Desktop& session);

/// The button of the tab: starts the run over the selection, and while it is running stops it after the
/// current user.
void btn_MoveUser_Click(Desktop& session);

}  // namespace twk::windows
