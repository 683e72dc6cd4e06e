#pragma once

#include <string>
#include <vector>

#include "batch/import_record.hpp"
#include "session/run_outcome.hpp"

namespace twk::batch {

/// What is left of a recorded run: its file, and the order with the lines that have their account.
struct ResumedImport {
  std::string file;
  ImportOrder order;
  RecordedRun run;  ///< the last one of those that went on with it
  /// The line on which the run was broken off, if that began, and those whose server was lost when it was
  /// asked for an account that is there.
  std::vector<RecordedLine> broken;
};

/// Of a run that was taken up before, the last run counts. Raises 13 with the reason when the run cannot be
/// taken up: it was into another domain, or its file is gone or has changed, so that nobody knows which lines
/// were made.
ResumedImport plan_resumption(session::Session& session, RecordedRun run);

/// What a broken line had made is taken back, so that it is made whole, and under the same name, by the run
/// that follows. Its account is minutes old at the most by the run's own time.
session::RunOutcome take_back_broken_line(session::Session& session, const ResumedImport& resumed,
                                          const RecordedLine& line);

}  // namespace twk::batch
