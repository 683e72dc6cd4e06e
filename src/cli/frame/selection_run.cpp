#include "cli/frame/selection_run.hpp"

#include "base/text.hpp"
#include "cli/terminal/display.hpp"
#include "cli/terminal/exit_codes.hpp"
#include "cli/terminal/failures.hpp"
#include "cli/terminal/interrupt.hpp"
#include "cli/terminal/progress.hpp"

namespace twk::cli {
namespace {

using session::Session;

/// "GREEN   Jo.Smith              Account Disabled for Jo.Smith"
std::string shown(Context& context, const batch::UserOutcome& outcome) {
  const std::string_view light = light_of(outcome);
  return context.output().light(light) + std::string(8 - light.size(), ' ') +
         pad(printable(outcome.user), 20) + "  " + printable(outcome.message);
}

void print(Context& context, const Session& session, const batch::UserOutcome& outcome) {
  context.output().result({{"user", outcome.user},
                           {"dn", dn_of_user(session, outcome.path)},
                           {"light", light_of(outcome)},
                           {"message", outcome.message},
                           {"warnings", warnings_of(light_of(outcome), outcome.message, outcome.warnings)}},
                          shown(context, outcome));
}

/// After a run the status bar only has failures on files.
void add_failure_on_files(Session& session, batch::UserOutcome& outcome) {
  const std::string failure = session.status.panel1;
  if (failure.empty())
    return;
  complain(failure);
  session.status.panel1 = std::string();
  if (outcome.light == session::kGreen)
    outcome.light = session::kYellow;
}

bool is_empty(const RunCounts& counts) {
  return counts.all() == 0 && counts.whole && !interrupted();
}

}  // namespace

std::string_view light_of(const batch::UserOutcome& outcome) {
  return outcome.light.empty() ? session::kYellow : std::string_view(outcome.light);
}

void RunCounts::add(std::string_view light, bool is_done) {
  if (light.empty())
    light = session::kYellow;
  ++(is_done ? done : failed);
  if (is_done && light != session::kGreen)
    ++warnings;
  if (exit_code_of_light(light) > exit_code_of_light(worst))
    worst = light;
}

std::string_view RunCounts::light() const {
  if (unknown > 0 && unknown == all())
    return session::kRed;
  const bool lacks_something = unknown > 0 || all() == 0 || !whole || interrupted();
  return worst == session::kGreen && lacks_something ? session::kYellow : std::string_view(worst);
}

std::string dn_of_user(const Session& session, const std::string& path) {
  const std::string prefix = "LDAP://" + session.DomainName + "/";
  return base::starts_with_fold(path, prefix) ? path.substr(prefix.size()) : std::string();
}

int tell_counts(Context& context, const RunCounts& counts, bool rehearsed) {
  const std::string message = std::to_string(counts.done) + (rehearsed ? " rehearsed, " : " done, ") +
                              std::to_string(counts.warnings) + " of them with warnings, " +
                              std::to_string(counts.failed) + " failed, " + std::to_string(counts.unknown) +
                              " unknown" + (interrupted() ? ", stopped." : ".");
  if (is_empty(counts))
    complain("the selection is empty; nothing was done");
  context.output().result({{"light", counts.light()},
                           {"done", counts.done},
                           {"warned", counts.warnings},
                           {"failed", counts.failed},
                           {"unknown", counts.unknown},
                           {"message", message}},
                          message);
  return exit_code_of_light(counts.light());
}

ConsoleView::ConsoleView(Context& context, Session& session) : context_(context), session_(session) {
  context.dialogs().before_text([this] { progress_.clear(); });
}

ConsoleView::~ConsoleView() {
  progress_.clear();
  context_.dialogs().before_text({});
}

void ConsoleView::status(std::string_view text) {
  session_.status.panel1 = std::string(text);
}

bool ConsoleView::going_on() {
  session_.platform.dialogs.DoEvents();
  return !interrupted();
}

RunCounts run_counted(Context& context, Session& session, RunCounts counts, bool rehearsed,
                      const SelectionRun& run,
                      const std::function<void(const batch::UserOutcome& outcome)>& print) {
  ConsoleView view(context, session);
  batch::RunHooks hooks;
  hooks.goes_on_after_failure = true;
  if (!rehearsed)
    hooks.changed = context.changed();
  hooks.done = [&](batch::UserOutcome outcome) {
    view.clear();
    add_failure_on_files(session, outcome);
    counts.add(outcome.light, outcome.done);
    // A rehearsal has already printed its steps.
    if (!rehearsed || !outcome.done || outcome.light != session::kGreen)
      print(outcome);
  };
  session.status.panel1 = std::string();
  run(view, hooks);
  return counts;
}

int run_over_selection(Context& context, Session& session, const SelectionArguments& arguments,
                       bool rehearsed, const SelectionRun& run) {
  const Found found = fill_selection(context, session, arguments);
  const RunCounts counts =
      run_counted(context, session, {.unknown = found.unknown, .whole = found.whole}, rehearsed, run,
                  [&](const batch::UserOutcome& outcome) { print(context, session, outcome); });
  if (is_empty(counts))
    explain_empty(context, arguments);
  return tell_counts(context, counts, rehearsed);
}

}  // namespace twk::cli
