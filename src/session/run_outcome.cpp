#include "session/run_outcome.hpp"

#include "base/text.hpp"
#include "session/activity_log.hpp"

namespace twk::session {

void begin_outcome(ActivityLog& log) {
  log.take_rows();
  log.take_told();
}

RunOutcome take_outcome(ActivityLog& log) {
  RunOutcome outcome;
  const std::vector<LogRow> rows = log.take_rows();
  outcome.warnings = log.take_told();
  if (rows.empty())
    return outcome;
  outcome.light = rows.back().light;
  outcome.message = base::trim(rows.back().text);
  for (std::size_t i = 0; i + 1 < rows.size(); ++i) {
    if (rows[i].light != kGreen)
      outcome.message += "; " + std::string(base::trim(rows[i].text));
  }
  return outcome;
}

RunOutcome take_worst(ActivityLog& log) {
  const auto rank = [](std::string_view light) { return light == kGreen ? 0 : light == kYellow ? 1 : 2; };
  RunOutcome outcome;
  outcome.warnings = log.take_told();
  for (const LogRow& row : log.take_rows()) {
    if (!outcome.light.empty() && rank(row.light) <= rank(outcome.light))
      continue;
    outcome.light = row.light;
    outcome.message = base::trim(row.text);
  }
  return outcome;
}

}  // namespace twk::session
