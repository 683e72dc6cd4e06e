#include "batch/delete_users.hpp"
#include "cli/frame/mailbox_reader.hpp"
#include "cli/frame/rehearsed_steps.hpp"
#include "cli/frame/resource_session.hpp"
#include "cli/frame/selection_run.hpp"
#include "cli/frame/user_runs.hpp"
#include "cli/parser/near_matches.hpp"
#include "cli/terminal/failures.hpp"
#include "cli/user/user_commands.hpp"
#include "cli/users/users_commands.hpp"
#include "lifecycle/deletion/delete_user.hpp"
#include "session/loaded_database.hpp"
#include "stores/template_store.hpp"

namespace twk::cli {
namespace {

struct DeleteArguments {
  SelectionArguments selection;
  bool shares = false;
  bool take_ownership = false;
  bool account = false;
  bool data = false;
  bool mail = false;
  std::string exchange_server;
  std::string mail_template;
  std::string mail_path;
  bool run_command = false;
  bool no_prompting = false;
  bool even_if_shared = false;
  bool dry_run = false;
};

void check(const DeleteArguments& arguments) {
  if (!arguments.shares && !arguments.account && !arguments.data && !arguments.mail && !arguments.run_command)
    throw UsageError("say what to delete: --shares, --account, --data, --mail or --run-command");
  if (arguments.take_ownership && !arguments.data)
    throw UsageError("--take-ownership is for folders that are deleted: give --data as well");
  if (arguments.mail && arguments.exchange_server.empty())
    throw UsageError("--mail needs the --exchange-server that holds the mailbox, or \"Exchange 2000\"");
  if (!arguments.mail && !arguments.exchange_server.empty())
    throw UsageError("--exchange-server says where the mailbox to delete is: give --mail as well");
  if (!arguments.mail && !(arguments.mail_template.empty() && arguments.mail_path.empty()))
    throw UsageError("--template and --path say which mailbox to delete: give --mail as well");
}

/// As a site spells it. Raises `Refused` for a server that no site has.
std::string known_exchange_server(session::Session& session, const std::string& server) {
  if (server.empty())
    return server;
  return find_name("Exchange server of a site", server, lifecycle::mailbox_servers(session));
}

/// The folders are found only through the shares.
lifecycle::DeleteOrder order_of(Context& context, session::Session& session,
                                const DeleteArguments& arguments) {
  lifecycle::DeleteOrder order = lifecycle::delete_order(session::read_preferences(session));
  order.shares = arguments.shares || arguments.data;
  order.take_ownership = arguments.take_ownership;
  order.account = arguments.account;
  order.data = arguments.data;
  order.mailbox = arguments.mail;
  order.command = arguments.run_command;
  order.mail.server = known_exchange_server(session, arguments.exchange_server);
  order.mail.path = arguments.mail_path;
  order.mail.choose = only_mailbox(session);
  order.terms.silent = arguments.no_prompting || arguments.dry_run;
  order.terms.even_if_shared = consent_of(arguments.even_if_shared);
  if (arguments.dry_run)
    tell_trees(context, order.terms);
  return order;
}

/// What decides which mailbox to delete when the mail table alone does not.
void give_mail_options(session::Session& session, const DeleteArguments& arguments) {
  if (!arguments.mail_template.empty()) {
    stores::tell(session, stores::load_template(session, find_name("template", arguments.mail_template,
                                                                   session.database.templates)));
  }
}

/// The session that the users are deleted in, and what is asked.
struct Prepared {
  session::Session& session;
  lifecycle::DeleteOrder order;
};

Prepared prepare(Context& context, const DeleteArguments& arguments) {
  check(arguments);
  if (arguments.dry_run)
    print_steps(context);
  session::Session& session = resource_session(context);
  lifecycle::DeleteOrder order = order_of(context, session, arguments);
  give_mail_options(session, arguments);
  return {session, std::move(order)};
}

int delete_named(Context& context, const DeleteArguments& arguments) {
  if (!arguments.mail_path.empty() && arguments.selection.names.size() > 1)
    throw UsageError("--path is the mailbox of one user: give one name with it");
  const Prepared run = prepare(context, arguments);
  return run_for_users(context, run.session, arguments.selection.names, arguments.dry_run,
                       [&](session::RunView& view, const batch::RunHooks& hooks) {
                         batch::delete_selection(run.session, run.order, view, hooks);
                       });
}

int delete_selected(Context& context, const DeleteArguments& arguments) {
  const Prepared run = prepare(context, arguments);
  return run_over_selection(context, run.session, arguments.selection, arguments.dry_run,
                            [&](session::RunView& view, const batch::RunHooks& hooks) {
                              batch::delete_selection(run.session, run.order, view, hooks);
                            });
}

void add_options(Command& command, DeleteArguments& arguments) {
  command.add_flag("--shares", arguments.shares, "The shares of home and profile");
  command.add_flag("--take-ownership", arguments.take_ownership,
                   "Take ownership of the folders before they are deleted");
  command.add_flag("--account", arguments.account, "The account itself");
  command.add_flag("--data", arguments.data, "The folders of home and profile, and their shares");
  command.add_flag("--mail", arguments.mail, "The mailbox");
  command
      .add_option("--exchange-server", arguments.exchange_server,
                  "Exchange 5.5 server of a site that holds the mailbox, or \"Exchange 2000\"")
      ->type_name("S");
  command
      .add_option("--template", arguments.mail_template,
                  "Template whose variables the mail table uses for the mailbox's container")
      ->type_name("T");
  command.add_flag("--run-command", arguments.run_command, "Run the command of the set-up tab afterwards");
  command.add_flag("--no-prompting", arguments.no_prompting, "Ask nothing");
  add_even_if_shared(command, arguments.even_if_shared);
  add_dry_run(command, arguments.dry_run);
}

}  // namespace

void add_user_delete(Command& user, Context& context) {
  auto arguments = std::make_shared<DeleteArguments>();
  auto* command = user.add_subcommand("delete", "Delete users and what belongs to their accounts");
  command
      ->add_option("NAME", arguments->selection.names,
                   "Account name, common name, principal name or distinguished name; several may be given")
      ->required();
  add_options(*command, *arguments);
  command
      ->add_option("--path", arguments->mail_path,
                   "Which one of several mailboxes: its path, as printed by `mailbox find`")
      ->type_name("PATH");
  command->callback(
      [=, &context] { context.set_action([=, &context] { return delete_named(context, *arguments); }); });
}

void add_users_delete(Command& users, Context& context) {
  auto arguments = std::make_shared<DeleteArguments>();
  auto* command = users.add_subcommand("delete", "Delete users and what belongs to their accounts");
  add_selection_options(*command, arguments->selection);
  add_options(*command, *arguments);
  command->callback(
      [=, &context] { context.set_action([=, &context] { return delete_selected(context, *arguments); }); });
}

}  // namespace twk::cli
