#pragma once

#include <functional>
#include <string>
#include <string_view>
#include <vector>

#include "live/logon/credentials.hpp"

namespace twk::live {

enum class StepOutcome {
  kPassed,
  kWarning,  ///< the domain can be used, but not in every way
  kFailed,
  kSkipped  ///< not used by this way of logging on, or not reached
};

/// "passed", "warning", "failed", "skipped".
std::string_view outcome_word(StepOutcome outcome);

struct CheckStep {
  std::string name;
  StepOutcome outcome = StepOutcome::kSkipped;
  std::string detail;  ///< what was found, or what is wrong and how to fix it
};

/// The names of the steps in their order: "name look-up", "port", "TLS", "ticket", "bind", "rights".
const std::vector<std::string>& check_step_names();

/// Checks everything that a logon to the domain needs, and reports each step as it ends. A step that needs
/// one that failed is skipped. The last one checks whether the account may create users below `place`, a
/// distinguished name; empty for a new domain's default container. Writes nothing. Raises only what `tell`
/// and the prompts raise.
std::vector<CheckStep> check_connection(const LiveSettings& settings, const Prompts& prompts,
                                        const std::string& place,
                                        const std::function<void(const CheckStep&)>& tell);

/// The worst outcome, not counting skipped steps.
StepOutcome worst_outcome(const std::vector<CheckStep>& steps);

}  // namespace twk::live
