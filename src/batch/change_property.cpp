#include "batch/change_property.hpp"

#include "batch/property_run.hpp"
#include "session/loaded_domain.hpp"
#include "session/run_scope.hpp"
#include "session/session.hpp"

namespace twk::batch {

PropertyCounts change_selection(session::Session& session, const PropertyOrder& order,
                                const std::string& value, session::RunView& view) {
  const session::RunScope scope(session, view);
  PropertyRun run{session, order, view};
  const controls::ListView& selection = session.domain.selection;
  WalkRules rules;
  rules.goes_on = [&run] { return !is_cancelled(run); };
  rules.failed = [&](const std::string& what, const base::RuntimeError& failure) {
    return tell_unread(run, what, value, failure);
  };
  in_change_block(run, value, [&] {
    walk_selection(session, rules, [&](SelectedUser& user) {
      if (user.row != nullptr && !user.as_member)
        show_progress(run, selection.place_of(*user.row), selection.size());
      change_one(run, user, value);
    });
  });
  return run.counts;
}

}  // namespace twk::batch
