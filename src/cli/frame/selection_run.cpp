#include "cli/frame/selection_run.hpp"

#include "base/text.hpp"
#include "cli/terminal/display.hpp"
#include "cli/terminal/exit_codes.hpp"
#include "cli/terminal/failures.hpp"
#include "cli/terminal/interrupt.hpp"
#include "cli/terminal/progress.hpp"
#include "session/account_windows.hpp"
#include "session/form1.hpp"
#include "session/multi_user.hpp"

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
  const std::string failure = session.form1.StatusBar1.panel1;
  if (failure.empty())
    return;
  complain(failure);
  session.form1.StatusBar1.panel1 = std::string();
  if (outcome.light == session::kGreen)
    outcome.light = session::kYellow;
}

}  // namespace

std::string_view light_of(const batch::UserOutcome& outcome) {
  return outcome.light.empty() ? session::kYellow : outcome.light;
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
  return worst == session::kGreen && lacks_something ? session::kYellow : worst;
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
  if (counts.all() == 0 && counts.whole && !interrupted())
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

RunProgress::RunProgress(Context& context, Session& session) : context_(context) {
  context.dialogs().before_text([this] { progress_.clear(); });
  context.dialogs().on_events([&session] { session.import.ImportStopped = interrupted(); });
  const auto show = [this](const controls::Label& label) {
    return label.caption.watch([this, &label] { progress_.show(label.caption.get()); });
  };
  step_ = show(session.multi_user.Label3);
  file_ = show(session.multi_user.progress);
}

RunProgress::~RunProgress() {
  progress_.clear();
  context_.dialogs().before_text({});
  context_.dialogs().on_events({});
}

std::function<bool()> until_interrupted(Session& session) {
  return [&session] {
    session.platform.dialogs.DoEvents();
    return !session.import.ImportStopped;
  };
}

RunCounts run_counted(Context& context, Session& session, RunCounts counts,
                      const std::function<void(const batch::RunHooks& hooks)>& run,
                      const std::function<void(const batch::UserOutcome& outcome)>& print) {
  RunProgress progress(context, session);
  batch::RunHooks hooks;
  hooks.goes_on_after_failure = true;
  hooks.done = [&](batch::UserOutcome outcome) {
    progress.clear();
    add_failure_on_files(session, outcome);
    counts.add(outcome.light, outcome.done);
    // A rehearsal has already printed its steps.
    if (!session.runs.rehearse || !outcome.done || outcome.light != session::kGreen)
      print(outcome);
  };
  session.form1.StatusBar1.panel1 = std::string();
  session.import.ImportStopped = interrupted();
  run(hooks);
  return counts;
}

int run_over_selection(Context& context, Session& session, const SelectionArguments& arguments,
                       const std::function<void(const batch::RunHooks& hooks)>& run) {
  const Found found = fill_selection(context, session, arguments);
  const RunCounts counts =
      run_counted(context, session, {.unknown = found.unknown, .whole = found.whole}, run,
                  [&](const batch::UserOutcome& outcome) { print(context, session, outcome); });
  return tell_counts(context, counts, static_cast<bool>(session.runs.rehearse));
}

}  // namespace twk::cli
