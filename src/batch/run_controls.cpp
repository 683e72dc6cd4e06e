#include "batch/run_controls.hpp"

#include "base/error_words.hpp"
#include "base/errors.hpp"
#include "lifecycle/account/account_log.hpp"
#include "lifecycle/trees/folder_use.hpp"
#include "session/loaded_domain.hpp"

namespace twk::batch {

using session::Session;

WalkRules rules_of(Session& session, const RunHooks& hooks, bool binds) {
  WalkRules rules;
  rules.binds = binds;
  rules.goes_on = [&session] { return session.run.goes_on(); };
  if (hooks.goes_on_after_failure) {
    rules.failed = [&session, &hooks](const std::string& what, const base::RuntimeError& failure) {
      const std::string reason = base::in_words(failure);
      session.log.line("Error with " + what + ": " + reason);
      if (hooks.done)
        hooks.done({{std::string(session::kRed), reason, false, {}}, what, what});
      return true;
    };
  }
  return rules;
}

bool take_selection(Session& session, const RunHooks& hooks,
                    const std::function<Taken(const SelectedUser& user, const std::string& key)>& operation) {
  const lifecycle::KnownFolders known(session);
  return walk_selection(session, rules_of(session, hooks, false), [&](SelectedUser& user) {
    const Taken taken = operation(user, session::is_active_directory(session) ? user.path : user.name);
    if (taken.leaves && user.row != nullptr)
      session.domain.selection.set_ghosted(*user.row, true);
    if (hooks.done)
      hooks.done({taken.outcome, user.name, user.path});
  });
}

void tell_run_failure(Session& session, std::string_view text, const base::RuntimeError& failure) {
  if (!session.log.is_open())
    session.log.begin_block();
  lifecycle::prepare_failure(session, text, text);
  lifecycle::report_stopped(session, failure);
}

}  // namespace twk::batch
