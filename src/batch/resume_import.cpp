#include "batch/resume_import.hpp"

#include "base/errors.hpp"
#include "batch/undo_import.hpp"
#include "session/session.hpp"

namespace twk::batch {
namespace {

[[noreturn]] void refuse(const std::string& fault) {
  base::raise(base::error::kTypeMismatch, fault);
}

bool has_its_account(const RecordedLine& line) {
  return line.ended == kMadeBefore || (line.has_account() && !line.ended.empty());
}

}  // namespace

ResumedImport plan_resumption(session::Session& session, const RecordedRun& run) {
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
  if (const RecordedLine* const broken = run.broken_line())
    resumed.broken = *broken;
  return resumed;
}

session::RunOutcome take_back_broken_line(session::Session& session, const ResumedImport& resumed) {
  return take_back(session, *resumed.broken);
}

}  // namespace twk::batch
