#pragma once

#include <string_view>

#include "creation/creation_run.hpp"
#include "session/creation_outcome.hpp"

/// What a run comes to, for whoever asked for it.
namespace twk::creation {

session::CreationOutcome outcome_of(const CreationRun& run, std::string_view light, std::string_view message);
/// The outcome that the log tab shows, with the reasons why it is not GREEN.
session::CreationOutcome told_outcome(CreationRun& run, std::string_view light, std::string_view message);
/// The same of a run that made its account, or would have.
session::CreationOutcome good_outcome(CreationRun& run);

}  // namespace twk::creation
