#include "creation/outcome_of.hpp"

#include <utility>

#include "session/log_tab.hpp"
#include "session/session.hpp"

namespace twk::creation {

using session::CreationOutcome;

CreationOutcome outcome_of(const CreationRun& run, std::string_view light, std::string_view message) {
  CreationOutcome outcome;
  outcome.user = run.UserId;
  outcome.light = light;
  outcome.message = message;
  outcome.first_name = run.request.FirstName;
  outcome.middle_name = run.request.MiddleName;
  outcome.last_name = run.request.LastName;
  outcome.name_taken = run.name_taken;
  outcome.is_known = run.is_known;
  outcome.is_unsure = run.is_unsure;
  return outcome;
}

CreationOutcome told_outcome(CreationRun& run, std::string_view light, std::string_view message) {
  std::vector<std::string> warnings = run.session.log.reasons();
  CreationOutcome outcome = outcome_of(run, light, session::LOG_TAB(run.session, light, message));
  outcome.warnings = std::move(warnings);
  return outcome;
}

CreationOutcome good_outcome(CreationRun& run) {
  const bool warned = run.RunWarning != 1;
  CreationOutcome outcome = told_outcome(run, warned ? session::kYellow : session::kGreen,
                                         run.request.names_only         ? "Would be created"
                                         : run.session.import.rehearsed ? run.UserId + " would be created"
                                                                        : run.UserId + " Created User ");
  outcome.summary_row = run.SummaryRow + (warned ? "Yes" : "No");
  return outcome;
}

}  // namespace twk::creation
