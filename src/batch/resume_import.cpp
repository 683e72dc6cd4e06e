#include "batch/resume_import.hpp"

#include <set>

#include "base/errors.hpp"
#include "base/text.hpp"
#include "batch/undo_import.hpp"
#include "session/session.hpp"

namespace twk::batch {
namespace {

[[noreturn]] void refuse(const std::string& fault) {
  base::raise(base::error::kTypeMismatch, fault);
}

/// Each run notes in the record of the one before that it went on with it.
RecordedRun last_of(platform::Files& files, RecordedRun run) {
  std::set<std::string> seen{run.path};
  while (!run.resumed_by.empty()) {
    if (!files.exists(run.resumed_by))
      refuse("Another run went on with that import, but its record is gone: " + run.resumed_by);
    if (!seen.insert(run.resumed_by).second)
      refuse("The records of that import lead to each other: " + run.resumed_by);
    run = load_import_record(files, run.resumed_by);
  }
  return run;
}

bool has_its_account(const RecordedLine& line) {
  const bool whole = !line.ended.empty() && line.ended != kTakenBack && !line.unfinished;
  return line.ended == kMadeBefore || (line.has_account() && whole);
}

}  // namespace

ResumedImport plan_resumption(session::Session& session, RecordedRun run) {
  run = last_of(session.platform.files, std::move(run));
  if (const std::string fault = refused_record(session, run); !fault.empty())
    refuse(fault);
  ResumedImport resumed;
  resumed.file = run.order.text("file");
  if (!session.platform.files.exists(resumed.file))
    refuse("The file of that import, " + resumed.file + ", is gone: import its remaining lines instead");
  if (fingerprint(session.platform.files.read(resumed.file)) != run.order.text("hash"))
    refuse("The file of that import, " + resumed.file +
           ", has changed since: import its remaining lines instead");
  resumed.order = order_of_record(session, run.order);
  for (const RecordedLine& line : run.lines) {
    if (has_its_account(line))
      resumed.order.made_before.insert(line.number);
  }
  // Of a name that two lines have, the account is the one whose line told its identifier.
  std::set<std::string> told;
  for (const RecordedLine& line : run.lines) {
    if (line.has_account())
      told.insert(base::upper(line.begun));
  }
  for (const RecordedLine& line : run.lines) {
    const bool is_last = &line == run.broken_line();
    const bool is_unsure = line.unsure && !told.contains(base::upper(line.begun));
    if (is_last || ((is_unsure || line.unfinished) && has_account(session, line)))
      resumed.broken.push_back(line);
  }
  resumed.order.resumes = run.path;
  resumed.run = std::move(run);
  return resumed;
}

session::RunOutcome take_back_broken_line(session::Session& session, const ResumedImport& resumed,
                                          const RecordedLine& line) {
  return take_back_recorded(session, resumed.run, line);
}

}  // namespace twk::batch
