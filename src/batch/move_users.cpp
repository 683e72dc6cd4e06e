#include "batch/move_users.hpp"

#include "lifecycle/move/move_user.hpp"
#include "session/run_scope.hpp"

namespace twk::batch {

bool move_selection(session::Session& session, const lifecycle::MoveOrder& order, session::RunView& view,
                    const RunHooks& hooks) {
  const session::RunScope scope(session, order.terms, view);
  return take_selection(session, hooks, [&](const SelectedUser& /*user*/, const std::string& key) {
    const session::RunOutcome outcome = lifecycle::Move_One_User(session, key, order, view);
    return Taken{outcome, outcome.done};
  });
}

}  // namespace twk::batch
