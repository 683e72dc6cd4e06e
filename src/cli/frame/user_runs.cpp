#include "cli/frame/user_runs.hpp"

#include "cli/terminal/display.hpp"
#include "cli/terminal/exit_codes.hpp"
#include "cli/terminal/failures.hpp"
#include "cli/terminal/interrupt.hpp"
#include "session/loaded_domain.hpp"

namespace twk::cli {
namespace {

using session::Session;

void print(Context& context, const batch::UserOutcome& outcome) {
  const std::string_view light = light_of(outcome);
  const std::string message = outcome.light.empty() ? outcome.user + ": " + outcome.message : outcome.message;
  context.output().result({{"user", outcome.user},
                           {"light", light},
                           {"message", message},
                           {"done", outcome.done},
                           {"warnings", warnings_of(light, message, outcome.warnings)}},
                          context.output().light(light) + "  " + printable(message));
}

}  // namespace

std::string key_of_user(Context& context, const std::string& name) {
  const Domain domain = context.domain();
  const std::string found = locate_user(domain, name);
  return domain.active_directory ? "LDAP://" + domain.name + "/" + found : found;
}

int run_for_users(Context& context, Session& session, const std::vector<std::string>& names, bool rehearsed,
                  const SelectionRun& run) {
  controls::ListView& selection = session.domain.selection;
  selection.clear();
  for (const std::string& name : names) {
    const std::string key = key_of_user(context, name);
    if (selection.find_key(key) == nullptr)
      selection.add(key, context.domain().active_directory ? name : key, "USER");
  }
  const bool several = selection.size() > 1;
  const RunCounts counts =
      run_counted(context, session, {}, rehearsed, run,
                  [&context](const batch::UserOutcome& outcome) { print(context, outcome); });
  if (several)
    return tell_counts(context, counts, rehearsed);
  if (interrupted())
    complain("stopped");
  return exit_code_of_light(counts.light());
}

void add_even_if_shared(Command& command, bool& even_if_shared) {
  command.add_flag("--even-if-shared", even_if_shared,
                   "Change folders and shares even if other accounts or shares also use them");
}

session::Consent consent_of(bool given) {
  return given ? session::Consent::kYes : session::Consent::kNo;
}

}  // namespace twk::cli
