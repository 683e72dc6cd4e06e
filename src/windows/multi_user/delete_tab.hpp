#pragma once

#include "lifecycle/deletion/delete_order.hpp"

namespace twk::windows {

struct Desktop;

/// What the boxes of the "Delete Users" tab and the preferences ask for.
lifecycle::DeleteOrder delete_order(Desktop& session);

/// The button of the tab: starts the run over the selection, and while it is running stops it after the
/// current user.
void Del_User_Click(Desktop& session);

}  // namespace twk::windows
