#include "cli/users/users_commands.hpp"

#include "cli/frame/commands.hpp"

namespace twk::cli {

void add_users_commands(Command& app, Context& context) {
  auto* users = app.add_subcommand("users", "Work on many users at once: of a group, a unit, a file");
  users->require_subcommand();
  add_users_account_functions(*users, context);
  add_users_find(*users, context);
  add_users_delete(*users, context);
  add_users_move(*users, context);
  add_users_move_ou(*users, context);
  add_users_groups(*users, context);
  add_users_rename(*users, context);
  add_users_set_attribute(*users, context);
}

}  // namespace twk::cli
