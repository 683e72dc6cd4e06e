#include "cli/user/import_again.hpp"

#include <algorithm>
#include <filesystem>
#include <optional>

#include "base/text.hpp"
#include "batch/resume_import.hpp"
#include "batch/undo_import.hpp"
#include "cli/frame/import_faults.hpp"
#include "cli/frame/import_steps.hpp"
#include "cli/frame/rehearsed_steps.hpp"
#include "cli/frame/selection_run.hpp"
#include "cli/terminal/display.hpp"
#include "cli/terminal/exit_codes.hpp"
#include "cli/terminal/failures.hpp"
#include "cli/terminal/interrupt.hpp"

namespace twk::cli {
namespace {

namespace fs = std::filesystem;

/// The record beside a file of remaining lines; any other path is that of the record.
std::string record_path(const std::string& given) {
  constexpr std::string_view kRemaining = "Import Remaining - ";
  const fs::path path = fs::absolute(given);
  const std::string name = path.stem().string();
  if (!name.starts_with(kRemaining))
    return path.string();
  return (path.parent_path() / ("Import Record - " + name.substr(kRemaining.size()) + ".jsonl")).string();
}

batch::RecordedRun read_record(Context& context, const std::string& given) {
  const std::string path = record_path(given);
  if (!fs::is_regular_file(path))
    throw BadInput("There is no record " + path);
  try {
    return batch::load_import_record(context.services().files, path);
  } catch (const base::RuntimeError& fault) {
    throw BadInput(path + ", " + fault.description());
  }
}

void print_line(Context& context, std::int32_t number, const std::string& user,
                const session::RunOutcome& outcome) {
  const std::string message(base::trim(outcome.message));
  Output& output = context.output();
  output.result({{"line", number},
                 {"user", user},
                 {"light", outcome.light},
                 {"message", message},
                 {"warnings", warnings_of(outcome.light, message, outcome.warnings)}},
                pad(std::to_string(number), 6) + output.light(outcome.light) +
                    std::string(8 - std::min<std::size_t>(outcome.light.size(), 7), ' ') +
                    pad(printable(user), 20) + "  " + printable(message));
}

/// Its account goes and comes back under the same name, so the lines after it find what they would find.
void foresee_broken_line(Context& context, const batch::RecordedLine& line, batch::ImportOrder& order) {
  session::RunOutcome outcome;
  outcome.light = session::kGreen;
  outcome.message = line.user + " would be taken back, because it was broken off, and created again";
  print_line(context, line.number, line.user, outcome);
  order.made_before.insert(line.number);
}

/// Raises when it must stay: the run that follows could not make it whole.
void take_back_broken_line(Context& context, session::Session& session, const batch::ResumedImport& resumed,
                           const batch::RecordedLine& line, std::optional<ImportSteps>& steps) {
  const session::RunOutcome outcome = batch::take_back_broken_line(session, resumed, line);
  if (steps)
    steps->print(line.number);
  print_line(context, line.number, line.user, outcome);
  if (!outcome.done)
    throw Refused("Line " + std::to_string(line.number) +
                  " was broken off and cannot be taken back: " + outcome.message);
}

}  // namespace

int resume_import(Context& context, const std::string& record, bool dry_run, ImportExtras extras) {
  const batch::RecordedRun run = read_record(context, record);
  std::optional<ImportSteps> steps;
  if (dry_run)
    extras.steps = &steps.emplace(context);
  // Whatever was chosen then is chosen again.
  for (const char* const bound : {"ImportGroupsStart", "ImportGroupsFinish"})
    context.override_setting("Setup", bound, run.order.text(bound));
  session::Session& session = context.session(Depth::kDomain);
  batch::ResumedImport resumed;
  try {
    resumed = batch::plan_resumption(session, run);
  } catch (const base::RuntimeError& fault) {
    throw BadInput(fault.description());
  }
  if (steps)
    steps->follow(session);
  for (const batch::RecordedLine& line : resumed.broken) {
    if (dry_run && batch::has_account(session, line))
      foresee_broken_line(context, line, resumed.order);
    else
      take_back_broken_line(context, session, resumed, line, steps);
  }
  if (tell_import_faults(context, session, resumed.order))
    return kExitRed;
  return run_import(context, session, resumed.file, resumed.order, extras);
}

int undo_import(Context& context, const std::string& record, bool dry_run) {
  const batch::RecordedRun run = read_record(context, record);
  if (dry_run)
    print_steps(context);
  session::Session& session = context.session(Depth::kDomain);
  if (const std::string fault = batch::refused_record(session, run); !fault.empty())
    throw BadInput(fault);
  const std::string question = batch::undo_question(run);
  if (!dry_run && context.dialogs().MsgBox(question, platform::Buttons::kYesNo, platform::Icon::kQuestion,
                                           "Undo Import") != platform::Answer::kYes)
    return kExitRed;
  RunCounts counts;
  batch::undo_import(session, run, [&](const batch::UndoneLine& undone) {
    print_line(context, undone.line.number, undone.line.user, undone.outcome);
    counts.add(undone.outcome.light, undone.outcome.done);
    return !interrupted();
  });
  context.keep_exit_code();
  return tell_counts(context, counts, dry_run);
}

}  // namespace twk::cli
