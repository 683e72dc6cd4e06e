#pragma once

#include <string>
#include <string_view>
#include <vector>

namespace twk::session {

class ActivityLog;

/// What came of an operation on one account.
struct RunOutcome {
  std::string light;  ///< empty when nothing was done
  std::string message = "nothing was done";
  bool done = false;                  ///< what was asked for was carried out, possibly with warnings
  std::vector<std::string> warnings;  ///< why the light is not GREEN, each reason for itself
};

/// What the log is told from here on counts for the next outcome.
void begin_outcome(ActivityLog& log);
/// The outcome by what the log was told since then: the last row is the result, followed by the
/// earlier ones that are not GREEN.
RunOutcome take_outcome(ActivityLog& log);
/// The same by the first row of the worst light.
RunOutcome take_worst(ActivityLog& log);

}  // namespace twk::session
