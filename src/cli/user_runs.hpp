#pragma once

#include <functional>
#include <string>
#include <vector>

#include "cli/command.hpp"
#include "cli/context.hpp"

/// What the commands that delete, move and reset users have in common.
namespace twk::cli {

/// The key that the runs know a user by, of any of the user's names. Raises `Refused`.
std::string key_of_user(Context& context, const std::string& name);

/// Runs an operation for each user by its key, until Ctrl-C is pressed. The last row that it adds to the log
/// tab is the user's result, what else is not GREEN goes to standard error. A terminal shows how far it is.
/// The exit code is that of the worst light, YELLOW for a user about whom nothing was done.
int run_for_users(Context& context, session::Session& session, const std::vector<std::string>& names,
                  const std::function<bool(const std::string& key)>& operation);

/// "--even-if-shared", and what a session is told of it.
void add_even_if_shared(Command& command, bool& even_if_shared);
session::Consent consent_of(bool given);

/// Prints each step of a rehearsal: of the services from the next session on, and of that session's trees.
void print_steps(Context& context);
void tell_trees(Context& context, session::Session& session);

}  // namespace twk::cli
