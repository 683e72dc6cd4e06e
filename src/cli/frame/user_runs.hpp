#pragma once

#include <functional>
#include <string>
#include <vector>

#include "batch/run_controls.hpp"
#include "cli/frame/context.hpp"
#include "cli/parser/command.hpp"
#include "session/account_windows.hpp"

/// What the commands that delete, move and reset users have in common.
namespace twk::cli {

/// The key that the runs know a user by, of any of the user's names. Raises `Refused`.
std::string key_of_user(Context& context, const std::string& name);

/// Takes the users by their names, all of whom must be there, for the selection of the multi-user window and
/// runs a function of it over them. Each user's outcome is a result, { user, light, message, done }; the
/// counts of several are the last one. The exit code is that of the counts. Raises `Refused` for a name that
/// nobody has.
int run_for_users(Context& context, session::Session& session, const std::vector<std::string>& names,
                  const std::function<void(const batch::RunHooks& hooks)>& run);

/// "--even-if-shared", and what a session is told of it.
void add_even_if_shared(Command& command, bool& even_if_shared);
session::Consent consent_of(bool given);

/// Prints each step of a rehearsal: of the services from the next session on, and of that session's trees.
void print_steps(Context& context);
void tell_trees(Context& context, session::Session& session);

}  // namespace twk::cli
