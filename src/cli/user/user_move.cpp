#include <map>

#include "batch/move_users.hpp"
#include "cli/frame/rehearsed_steps.hpp"
#include "cli/frame/selection_run.hpp"
#include "cli/frame/user_runs.hpp"
#include "cli/parser/near_matches.hpp"
#include "cli/terminal/failures.hpp"
#include "cli/user/user_commands.hpp"
#include "cli/users/users_commands.hpp"
#include "session/loaded_database.hpp"

namespace twk::cli {
namespace {

struct MoveArguments {
  SelectionArguments selection;
  std::string site;
  std::string template_name;
  std::string data;
  bool add_to_groups = false;
  bool change_logon = false;
  bool run_command = false;
  bool no_prompt = false;
  bool dry_run = false;
  bool even_if_shared = false;
  bool new_paths_anyway = false;
};

const std::map<std::string, lifecycle::MovedData> kData = {{"move", lifecycle::MovedData::kMove},
                                                           {"copy", lifecycle::MovedData::kCopy},
                                                           {"nothing", lifecycle::MovedData::kStays}};

lifecycle::MoveOrder order_of(Context& context, session::Session& session, const MoveArguments& arguments) {
  lifecycle::MoveOrder order = lifecycle::move_order(session::read_preferences(session));
  order.site = find_name("site", arguments.site, session.database.sites);
  order.template_name = find_name("template", arguments.template_name, session.database.templates);
  order.data = kData.at(arguments.data);
  order.add_to_groups = arguments.add_to_groups;
  order.change_logon = arguments.change_logon;
  order.command = arguments.run_command;
  order.terms.silent = arguments.no_prompt || arguments.dry_run;
  order.terms.even_if_shared = consent_of(arguments.even_if_shared);
  order.terms.new_paths_anyway = consent_of(arguments.new_paths_anyway);
  if (arguments.dry_run)
    tell_trees(context, order.terms);
  return order;
}

/// The session that the users are moved in, and what is asked.
struct PreparedMove {
  session::Session& session;
  lifecycle::MoveOrder order;
};

PreparedMove prepare(Context& context, const MoveArguments& arguments) {
  if (arguments.dry_run)
    print_steps(context);
  session::Session& session = context.session(Depth::kDomain);
  return {session, order_of(context, session, arguments)};
}

int move_named(Context& context, const MoveArguments& arguments) {
  const PreparedMove run = prepare(context, arguments);
  return run_for_users(context, run.session, arguments.selection.names, arguments.dry_run,
                       [&](session::RunView& view, const batch::RunHooks& hooks) {
                         batch::move_selection(run.session, run.order, view, hooks);
                       });
}

int move_selected(Context& context, const MoveArguments& arguments) {
  const PreparedMove run = prepare(context, arguments);
  return run_over_selection(context, run.session, arguments.selection, arguments.dry_run,
                            [&](session::RunView& view, const batch::RunHooks& hooks) {
                              batch::move_selection(run.session, run.order, view, hooks);
                            });
}

void add_options(Command& move, MoveArguments& arguments) {
  move.add_option("--site", arguments.site, "Site to move to")->required()->type_name("S");
  move.add_option("--template", arguments.template_name, "Template that says where things go")
      ->required()
      ->type_name("T");
  move.add_option("--data", arguments.data, "What to do with the data: move, copy or nothing")
      ->required()
      ->check(Check::one_of({"move", "copy", "nothing"}))
      ->type_name("WORD");
  move.add_flag("--add-to-groups", arguments.add_to_groups, "Add the users to the template's groups");
  move.add_flag("--change-logon", arguments.change_logon, "Set the template's logon script");
  move.add_flag("--run-command", arguments.run_command, "Run the command of the set-up tab afterwards");
  move.add_flag("--no-prompt", arguments.no_prompt, "Ask nothing");
  add_even_if_shared(move, arguments.even_if_shared);
  move.add_flag("--new-paths-anyway", arguments.new_paths_anyway,
                "Give the account its new paths even if its data could not be copied");
  add_dry_run(move, arguments.dry_run);
}

}  // namespace

void add_user_move(Command& user, Context& context) {
  auto arguments = std::make_shared<MoveArguments>();
  auto* move = user.add_subcommand(
      "move",
      "Move users and their data to another site and template; `user move-ou` moves them in the tree");
  move->add_option("NAME", arguments->selection.names,
                   "Account name, common name, principal name or distinguished name; several may be given")
      ->required();
  add_options(*move, *arguments);
  move->callback(
      [=, &context] { context.set_action([=, &context] { return move_named(context, *arguments); }); });
}

void add_users_move(Command& users, Context& context) {
  auto arguments = std::make_shared<MoveArguments>();
  auto* move = users.add_subcommand(
      "move",
      "Move users and their data to another site and template; `users move-ou` moves them in the tree");
  add_selection_options(*move, arguments->selection);
  add_options(*move, *arguments);
  move->callback(
      [=, &context] { context.set_action([=, &context] { return move_selected(context, *arguments); }); });
}

}  // namespace twk::cli
