#include "cli/selection_run.hpp"

#include "base/text.hpp"
#include "cli/display.hpp"
#include "cli/exit_codes.hpp"
#include "cli/failures.hpp"
#include "cli/interrupt.hpp"
#include "cli/progress.hpp"

namespace twk::cli {
namespace {

using session::Session;

void print(Context& context, const Session& session, const batch::UserOutcome& outcome) {
  const std::string_view light = outcome.light.empty() ? session::kYellow : outcome.light;
  context.output().result({{"user", outcome.user},
                           {"dn", dn_of_user(session, outcome.path)},
                           {"light", light},
                           {"message", outcome.message}},
                          context.output().light(light) + std::string(8 - light.size(), ' ') +
                              pad(printable(outcome.user), 20) + "  " + printable(outcome.message));
}

}  // namespace

std::string_view RunCounts::light() const {
  if (failed + unknown == 0)
    return interrupted() || !whole || all() == 0 ? session::kYellow : session::kGreen;
  return done == 0 ? session::kRed : session::kYellow;
}

std::string dn_of_user(const Session& session, const std::string& path) {
  const std::string prefix = "LDAP://" + session.DomainName + "/";
  return base::starts_with_fold(path, prefix) ? path.substr(prefix.size()) : std::string();
}

int tell_counts(Context& context, const RunCounts& counts, bool rehearsed) {
  const std::string message = std::to_string(counts.done) + (rehearsed ? " rehearsed, " : " done, ") +
                              std::to_string(counts.failed) + " failed, " + std::to_string(counts.unknown) +
                              " unknown" + (interrupted() ? ", stopped." : ".");
  if (counts.all() == 0 && counts.whole && !interrupted())
    complain("nobody is in the selection; nothing was done");
  context.output().result({{"light", counts.light()},
                           {"done", counts.done},
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

int run_over_selection(Context& context, Session& session, const SelectionArguments& arguments,
                       const std::function<void(const batch::RunHooks& hooks)>& run) {
  const Found found = fill_selection(context, session, arguments);
  RunCounts counts{.unknown = found.unknown, .whole = found.whole};
  RunProgress progress(context, session);
  batch::RunHooks hooks;
  hooks.goes_on_after_failure = true;
  hooks.done = [&](const batch::UserOutcome& outcome) {
    progress.clear();
    // Of a run the status bar holds only what failed on files.
    if (!session.form1.StatusBar1.panel1.get().empty())
      complain(session.form1.StatusBar1.panel1.get());
    session.form1.StatusBar1.panel1 = std::string();
    // A rehearsal tells its steps; nothing came of them.
    const bool good = outcome.light == session::kGreen || (session.runs.rehearse && outcome.light.empty());
    ++(good ? counts.done : counts.failed);
    if (!session.runs.rehearse || !good)
      print(context, session, outcome);
  };
  session.form1.StatusBar1.panel1 = std::string();
  session.import.ImportStopped = interrupted();
  run(hooks);
  progress.clear();
  return tell_counts(context, counts, static_cast<bool>(session.runs.rehearse));
}

}  // namespace twk::cli
