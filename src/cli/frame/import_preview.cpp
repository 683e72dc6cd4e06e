#include "cli/frame/import_preview.hpp"

#include <algorithm>

#include "base/text.hpp"
#include "cli/frame/creation_progress.hpp"
#include "cli/terminal/exit_codes.hpp"
#include "cli/terminal/failures.hpp"
#include "cli/terminal/interrupt.hpp"

namespace twk::cli {
namespace {

const std::vector<Column> kColumns = {{"line", "Line"},      {"light", "Light"},   {"user", "User"},
                                      {"first", "First"},    {"middle", "Middle"}, {"last", "Last"},
                                      {"message", "Message"}};

void print_row(const session::ImportRow& row, const std::string& light, RowPrinter& rows) {
  const session::CreationOutcome& outcome = row.outcome;
  const std::string message(base::trim(outcome.message));
  if (rows.takes_texts()) {
    return rows.add_texts({base::to_text(row.line), light, outcome.user, outcome.first_name,
                           outcome.middle_name, outcome.last_name, message});
  }
  rows.add({{"line", row.line},
            {"user", outcome.user},
            {"light", light},
            {"message", message},
            {"warnings", warnings_of(light, message, outcome.warnings)},
            {"first", outcome.first_name},
            {"middle", outcome.middle_name},
            {"last", outcome.last_name}});
}

}  // namespace

int preview_import(Context& context, session::Session& session, const std::string& path,
                   batch::ImportOrder order) {
  session::ImportState& state = session.import;
  // Every line must be shown, even after a halt.
  order.halt_on_errors = false;
  order.halt_on_warnings = false;
  order.user.names_only = true;
  // A run's questions are reported, and answered with Yes.
  if (context.dialogs().asks_person())
    context.dialogs().set_asking(Asking::kYes);
  RowPrinter rows(context.output(), kColumns);
  int exit_code = kExitGreen;
  state.rehearsed = true;
  session.log.rehearse(true);
  state.row_done = [&](const session::ImportRow& row) {
    const std::string light = row.outcome.light.empty() ? std::string(session::kRed) : row.outcome.light;
    print_row(row, light, rows);
    exit_code = std::max(exit_code, exit_code_of_light(light));
  };
  context.dialogs().on_events([&] {
    if (interrupted())
      state.ImportStopped = true;
  });
  CreationProgress progress(session);
  batch::run_import(session, path, order, progress);
  context.dialogs().on_events({});
  state.row_done = {};
  rows.finish();
  if (!state.failure.empty())
    complain(state.failure);
  if (!state.failure.empty())
    return kExitRed;
  context.keep_exit_code();
  if (state.ImportStopped)
    complain("stopped; the remaining lines were not checked");
  return state.ImportStopped ? std::max(exit_code, kExitYellow) : exit_code;
}

}  // namespace twk::cli
