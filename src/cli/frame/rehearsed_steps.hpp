#pragma once

#include "cli/frame/context.hpp"
#include "cli/parser/command.hpp"
#include "session/current_run.hpp"

/// How a command is rehearsed.
namespace twk::cli {

/// "--dry-run".
void add_dry_run(Command& command, bool& dry_run);

/// Prints each step of a rehearsal as a result, { step, user }: those of the services from the next session
/// on, and those of that session's trees. Between users a step has no `user`.
void print_steps(Context& context);
void tell_trees(Context& context, session::RunTerms& terms);

}  // namespace twk::cli
