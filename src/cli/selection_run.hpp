#pragma once

#include <functional>

#include "batch/run_controls.hpp"
#include "cli/selection_arguments.hpp"

namespace twk::cli {

/// Fills the selection and runs a function of the multi-user window over it: gives it the hooks to pass on,
/// which let it go on behind a user who failed. Each user's outcome is a result, { user, dn, light, message
/// }, and the counts are the last one, { light, done, failed, unknown, message }. A terminal shows how far it
/// is; Ctrl-C stops behind the user in hand, and the counts say so.
///
/// Exit code GREEN when all came through, RED when none did, YELLOW for what lies between.
int run_over_selection(Context& context, session::Session& session, const SelectionArguments& arguments,
                       const std::function<void(const batch::RunHooks& hooks)>& run);

/// Lets Ctrl-C in, and tells whether to go on: for functions that ask before each user.
std::function<bool()> until_interrupted(session::Session& session);

}  // namespace twk::cli
