#pragma once

#include "batch/account_change.hpp"
#include "batch/run_controls.hpp"

namespace twk::batch {

/// Takes back what a run changed on one account: the one with that identifier, wherever it is and whatever it
/// is called by now. What is so already is done. RED when the account is gone, when somebody has changed
/// since what the run set, and when the directory refuses.
UserOutcome take_back(session::Session& session, const AccountChange& change);

}  // namespace twk::batch
