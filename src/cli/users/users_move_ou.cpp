#include "batch/move_to_unit.hpp"
#include "cli/frame/rehearsed_steps.hpp"
#include "cli/frame/resource_session.hpp"
#include "cli/frame/selection_run.hpp"
#include "cli/users/users_commands.hpp"

namespace twk::cli {
namespace {

struct MoveOuArguments {
  std::string unit;
  SelectionArguments selection;
  bool dry_run = false;
};

int move_users(Context& context, const MoveOuArguments& arguments) {
  if (arguments.dry_run)
    print_steps(context);
  session::Session& session = resource_session(context);
  const std::string unit = locate_unit(context.domain(), arguments.unit);
  return run_over_selection(context, session, arguments.selection, arguments.dry_run,
                            [&](session::RunView& view, const batch::RunHooks& hooks) {
                              batch::move_to_unit(session, unit, view, hooks);
                            });
}

}  // namespace

void add_users_move_ou(Command& users, Context& context) {
  auto arguments = std::make_shared<MoveOuArguments>();
  auto* command = users.add_subcommand(
      "move-ou", "Move users to another organizational unit; `users move` moves their data");
  command->add_option("OU", arguments->unit, "Distinguished name of the unit to move to")
      ->required()
      ->type_name("DN");
  add_selection_options(*command, arguments->selection);
  add_dry_run(*command, arguments->dry_run);
  command->callback(
      [=, &context] { context.set_action([=, &context] { return move_users(context, *arguments); }); });
}

}  // namespace twk::cli
