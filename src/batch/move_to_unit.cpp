#include "batch/move_to_unit.hpp"

#include "base/text.hpp"
#include "directory/names.hpp"
#include "platform/adsi.hpp"
#include "session/loaded_domain.hpp"
#include "session/run_scope.hpp"

namespace twk::batch {
namespace {

using platform::ObjectPtr;
using session::Session;

/// Moves one user; returns what is told of it.
std::string move_one(Session& session, const ObjectPtr& target, const std::string& unit,
                     const SelectedUser& user, const RunHooks& hooks) {
  const std::string before(directory::name_above(directory::name_in_path(user.path)));
  if (base::equals_fold(before, unit))
    return user.name + " is in " + unit + " already";
  const std::string sid = hooks.changed ? platform::readable_sid(user.object) : std::string();
  target->MoveHere(user.path, std::nullopt);
  if (user.row != nullptr)
    session.domain.selection.set_ghosted(*user.row, true);
  if (hooks.changed)
    hooks.changed({AccountChange::Kind::kMoved, sid, before, {}, {unit}});
  return user.name + " moved to " + unit;
}

}  // namespace

bool move_to_unit(Session& session, const std::string& unit, session::RunView& view, const RunHooks& hooks) {
  const session::RunScope scope(session, view);
  const ObjectPtr target = session.platform.directory.GetObject("LDAP://" + session.DomainName + "/" + unit);
  session.log.begin_block();
  const bool binds = hooks.changed != nullptr;
  const bool whole = walk_selection(session, rules_of(session, hooks, binds), [&](SelectedUser& user) {
    view.step("Moving User: " + user.name);
    const std::string told = move_one(session, target, unit, user, hooks);
    session.log.line(told);
    if (hooks.done)
      hooks.done({{std::string(session::kGreen), told, true, {}}, user.name, user.path});
  });
  session.log.close();
  return whole;
}

}  // namespace twk::batch
