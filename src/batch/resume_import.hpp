#pragma once

#include <optional>
#include <string>

#include "batch/import_record.hpp"
#include "session/run_outcome.hpp"

namespace twk::batch {

/// What is left of a recorded run: its file, and the order with the lines that have their account.
struct ResumedImport {
  std::string file;
  ImportOrder order;
  RecordedRun run;                     ///< the last one of those that went on with it
  std::optional<RecordedLine> broken;  ///< the line on which the run was broken off, if that began
};

/// Of a run that was taken up before, the last run counts. Raises 13 with the reason when the run cannot be
/// taken up: it was into another domain, or its file is gone or has changed, so that nobody knows which lines
/// were made.
ResumedImport plan_resumption(session::Session& session, RecordedRun run);

/// What the broken line had made is taken back, so that it is made whole, and under the same name, by the run
/// that follows. Its account is minutes old at the most by the run's own time.
session::RunOutcome take_back_broken_line(session::Session& session, const ResumedImport& resumed);
/// True when the broken line got as far as its account, and nobody has deleted that since.
bool has_broken_account(session::Session& session, const ResumedImport& resumed);

}  // namespace twk::batch
