#pragma once

namespace twk::windows {

struct Desktop;

/// The button `btnGo` of the "Accounts" tab: starts the chosen function, after one confirmation if it changes
/// accounts at once, and while it is running stops it after the current account. "Find Locked Accounts" has
/// two stages: the first moves the accounts that are locked out into the selection, the next Go unlocks the
/// selection.
void btnGo_Click(Desktop& session);

}  // namespace twk::windows
