#include "live/terms/check_step.hpp"

namespace twk::live {

std::string_view outcome_word(StepOutcome outcome) {
  switch (outcome) {
    case StepOutcome::kPassed:
      return "passed";
    case StepOutcome::kWarning:
      return "warning";
    case StepOutcome::kFailed:
      return "failed";
    case StepOutcome::kSkipped:
      break;
  }
  return "skipped";
}

const std::vector<std::string>& check_step_names() {
  static const std::vector<std::string> names = {"name look-up", "port",  "TLS",  "ticket",   "bind",
                                                 "rights",       "clock", "site", "catalogue"};
  return names;
}

StepOutcome worst_outcome(const std::vector<CheckStep>& steps) {
  StepOutcome worst = StepOutcome::kPassed;
  for (const CheckStep& step : steps) {
    if (step.outcome != StepOutcome::kSkipped && step.outcome > worst)
      worst = step.outcome;
  }
  return worst;
}

}  // namespace twk::live
