#include "cli/user/user_commands.hpp"

#include "cli/frame/commands.hpp"

namespace twk::cli {

void add_user_commands(Command& app, Context& context) {
  auto* user = app.add_subcommand("user", "Create, import, show, change, move and delete users");
  user->require_subcommand();
  add_user_create(*user, context);
  add_user_import(*user, context);
  add_user_find(*user, context);
  add_user_move_ou(*user, context);
  add_user_set(*user, context);
  add_user_groups(*user, context);
  add_user_delete(*user, context);
  add_user_move(*user, context);
  add_user_rename(*user, context);
  add_user_reset_password(*user, context);
  add_user_show(*user, context);
  add_user_list(*user, context);
  add_user_compare(*user, context);
}

}  // namespace twk::cli
