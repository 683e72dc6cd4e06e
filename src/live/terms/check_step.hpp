#pragma once

#include <string>
#include <string_view>
#include <vector>

namespace twk::live {

enum class StepOutcome {
  kPassed,
  kWarning,  ///< the domain can be used, but not in every way
  kFailed,
  kSkipped  ///< not used by this way of logging on, or not reached
};

/// "passed", "warning", "failed", "skipped".
std::string_view outcome_word(StepOutcome outcome);

/// A step of the check of a connection.
struct CheckStep {
  std::string name;
  StepOutcome outcome = StepOutcome::kSkipped;
  std::string detail;  ///< what was found, or what is wrong and how to fix it
};

/// Where the rights of the account are looked at.
struct CheckedPlace {
  std::string dn;          ///< empty: a new domain's container for users
  bool delegated = false;  ///< any right there is enough, not only that to create users
};

/// The names of the steps in their order: "name look-up", "port", "TLS", "ticket", "bind", "rights", "clock",
/// "site", "catalogue".
const std::vector<std::string>& check_step_names();

/// The worst outcome, not counting skipped steps.
StepOutcome worst_outcome(const std::vector<CheckStep>& steps);

}  // namespace twk::live
