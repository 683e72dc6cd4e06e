#pragma once

#include <string>
#include <vector>

#include "batch/run_controls.hpp"
#include "cli/frame/context.hpp"
#include "cli/frame/selection_run.hpp"
#include "cli/parser/command.hpp"
#include "session/current_run.hpp"

/// What the commands that delete, move and reset users share.
namespace twk::cli {

/// The runs' key of a user, from any of the user's names. Raises `Refused`.
std::string key_of_user(Context& context, const std::string& name);

/// Selects the users with these names, all of whom must exist, and runs over them. Each user's outcome is a
/// result, { user, light, message, done }; the counts of several are the last one. The exit code is that of
/// the counts. Raises `Refused` for an unknown name.
int run_for_users(Context& context, session::Session& session, const std::vector<std::string>& names,
                  bool rehearsed, const SelectionRun& run);

/// "--even-if-shared", and how it is passed to a session.
void add_even_if_shared(Command& command, bool& even_if_shared);
session::Consent consent_of(bool given);

}  // namespace twk::cli
