#pragma once

#include <functional>
#include <string>
#include <string_view>
#include <vector>

#include "live/logon/credentials.hpp"

namespace twk::live {

enum class StepOutcome {
  kPassed,
  kWarning,  ///< the domain can be worked with, but not in every way
  kFailed,
  kSkipped  ///< not used by this way of logging on, or not reached
};

/// "passed", "warning", "failed", "skipped".
std::string_view outcome_word(StepOutcome outcome);

struct CheckStep {
  std::string name;
  StepOutcome outcome = StepOutcome::kSkipped;
  std::string detail;  ///< what was found, or what is wrong and what helps
};

/// The names of the steps in their order: "name look-up", "port", "TLS", "ticket", "bind", "rights".
const std::vector<std::string>& check_step_names();

/// Goes through all that a logon to the domain needs, and tells each step as it ends. A step that needs one
/// that failed is skipped. The last one looks whether the account may create users below `place`, a
/// distinguished name; empty for the container that a new domain has for them. Writes nothing. Raises
/// nothing but what `tell` and the prompts raise.
std::vector<CheckStep> check_connection(const LiveSettings& settings, const Prompts& prompts,
                                        const std::string& place,
                                        const std::function<void(const CheckStep&)>& tell);

/// The worst of the outcomes, skipped ones aside.
StepOutcome worst_outcome(const std::vector<CheckStep>& steps);

}  // namespace twk::live
