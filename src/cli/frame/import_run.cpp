#include "cli/frame/import_run.hpp"

#include <set>

#include "base/text.hpp"
#include "cli/frame/creation_progress.hpp"
#include "cli/terminal/display.hpp"
#include "cli/terminal/exit_codes.hpp"
#include "cli/terminal/failures.hpp"
#include "cli/terminal/interrupt.hpp"
#include "local/posix_files.hpp"

namespace twk::cli {
namespace {

struct Counts {
  std::size_t created = 0;
  std::size_t warnings = 0;
  std::size_t refused = 0;
  std::size_t known = 0;  ///< people who have an account
};

/// "4 created, 1 of them with warnings, 2 not created"
std::string in_words(const Counts& counts, const char* created) {
  return std::to_string(counts.created) + created + std::to_string(counts.warnings) +
         " of them with warnings, " + std::to_string(counts.refused) + " not created" +
         (counts.known == 0 ? "" : ", " + std::to_string(counts.known) + " with an account already");
}

std::string_view light_of_row(const session::ImportRow& row) {
  return row.outcome.light.empty() ? session::kRed : std::string_view(row.outcome.light);
}

void print_row(Output& output, const session::ImportRow& row, Counts& counts) {
  const std::string_view light = light_of_row(row);
  const std::string message(base::trim(row.outcome.message));
  if (row.outcome.is_known)
    ++counts.known;
  else if (light == session::kRed)
    ++counts.refused;
  else
    ++counts.created;
  if (light == session::kYellow && !row.outcome.is_known)
    ++counts.warnings;
  output.result({{"line", row.line},
                 {"user", row.outcome.user},
                 {"light", light},
                 {"message", message},
                 {"warnings", warnings_of(light, message, row.outcome.warnings)}},
                pad(std::to_string(row.line), 6) + output.light(light) + std::string(8 - light.size(), ' ') +
                    pad(printable(row.outcome.user), 20) + "  " + printable(message));
}

/// GREEN when every line made a user without a warning; RED when the run was halted or failed.
std::string_view light_of_run(const session::ImportState& state, const Counts& counts, bool faultless) {
  if (!state.failure.empty() || state.ImportHalt)
    return session::kRed;
  const bool clean = faultless && counts.refused == 0 && counts.warnings == 0 && !state.ImportStopped;
  return clean ? session::kGreen : session::kYellow;
}

std::string end_of_run(const session::Session& session) {
  const session::ImportState& state = session.import;
  if (!state.failure.empty())
    return state.failure;
  if (state.ImportHalt)
    return "Import Halted because errors were detected";
  return state.ImportStopped ? "Import Halted by User" : session.status.panel1.get();
}

void print_rehearsed_end(Output& output, const Counts& counts, std::string_view light,
                         const std::string& message) {
  output.result({{"light", light},
                 {"created", counts.created},
                 {"warned", counts.warnings},
                 {"refused", counts.refused},
                 {"known", counts.known},
                 {"message", message}},
                in_words(counts, " would be created, ") + ". Nothing was written.");
}

void print_end(Output& output, const session::ImportState& state, const Counts& counts,
               std::string_view light, const std::string& message) {
  const std::string error_path = local::to_local_path(state.error_path);
  const std::string summary_path = local::to_local_path(state.summary_path);
  const std::string remaining_path = local::to_local_path(state.remaining_path);
  const std::string record_path = local::to_local_path(state.record_path);
  output.result({{"light", light},
                 {"created", counts.created},
                 {"warned", counts.warnings},
                 {"refused", counts.refused},
                 {"known", counts.known},
                 {"importErr", error_path},
                 {"summary", summary_path},
                 {"remaining", remaining_path},
                 {"record", record_path},
                 {"message", message}},
                in_words(counts, " created, ") + (state.ImportStopped ? ", stopped.\n" : ".\n") +
                    "Not created: " + printable(error_path) + "\nRemaining:   " + printable(remaining_path) +
                    "\nSummary:     " + printable(summary_path) + "\nRecord:      " + printable(record_path));
}

/// Prints what went wrong besides the creations, each text once: a log or a summary that could not be
/// written. True when there was something.
bool tell_faults(const session::Session& session, std::set<std::string> told) {
  const controls::ListView& rows = session.log_rows;
  bool any = false;
  for (std::size_t i = 0; i < rows.size(); ++i) {
    if (rows.at(i).icon != session::kYellow || !told.insert(rows.at(i).text).second)
      continue;
    complain(rows.at(i).text);
    any = true;
  }
  return any;
}

}  // namespace

int run_import(Context& context, session::Session& session, const std::string& path,
               const batch::ImportOrder& order, const ImportExtras& extras) {
  ImportSteps* const steps = extras.steps;
  session::ImportState& state = session.import;
  state.rehearsed = steps != nullptr;
  session.log.rehearse(steps != nullptr);
  Counts counts;
  CreationProgress progress(session);
  progress.on_password(extras.password_set);
  std::set<std::string> outcomes;
  context.dialogs().before_text([&] { progress.clear(); });
  context.dialogs().on_events([&] {
    if (interrupted())
      state.ImportStopped = true;
  });
  state.row_done = [&](const session::ImportRow& row) {
    progress.clear();
    if (steps != nullptr)
      steps->print(row.line);
    print_row(context.output(), row, counts);
    outcomes.insert(row.outcome.message);
  };
  batch::run_import(session, path, order, progress);
  progress.clear();
  context.dialogs().before_text({});
  context.dialogs().on_events({});
  state.row_done = {};

  const bool faults = tell_faults(session, std::move(outcomes));
  if (!state.failure.empty())
    complain(state.failure);
  if (state.summary_path.empty() && (!state.rehearsed || !state.failure.empty()))
    return kExitRed;
  const std::string_view light = light_of_run(state, counts, !faults);
  if (state.rehearsed)
    print_rehearsed_end(context.output(), counts, light, end_of_run(session));
  else
    print_end(context.output(), state, counts, light, end_of_run(session));
  context.keep_exit_code();
  return exit_code_of_light(light);
}

}  // namespace twk::cli
