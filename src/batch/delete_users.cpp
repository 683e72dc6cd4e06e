#include "batch/delete_users.hpp"

#include "lifecycle/deletion/delete_user.hpp"
#include "session/run_scope.hpp"

namespace twk::batch {

bool delete_selection(session::Session& session, const lifecycle::DeleteOrder& order, session::RunView& view,
                      const RunHooks& hooks) {
  const session::RunScope scope(session, order.terms, view);
  return take_selection(session, hooks, [&](const SelectedUser& user, const std::string& key) {
    view.step("Deleting User: " + user.name);
    const session::RunOutcome outcome = lifecycle::Delete_One_User(session, key, order, view);
    return Taken{outcome, outcome.done && order.account};
  });
}

}  // namespace twk::batch
