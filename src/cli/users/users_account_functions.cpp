#include "batch/account_functions.hpp"
#include "batch/unlock_accounts.hpp"
#include "cli/frame/rehearsed_steps.hpp"
#include "cli/frame/resource_session.hpp"
#include "cli/frame/selection_run.hpp"
#include "cli/terminal/failures.hpp"
#include "cli/terminal/input.hpp"
#include "cli/users/users_commands.hpp"
#include "session/preferences.hpp"

namespace twk::cli {
namespace {

using batch::AccountFunction;

/// A password that does not come from the setting; "PROMPT" asks the dialogs, which then have it.
struct PasswordSource {
  bool from_stdin = false;
  std::string file;

  [[nodiscard]] bool given() const { return from_stdin || !file.empty(); }
};

struct FunctionArguments {
  SelectionArguments selection;
  PasswordSource password;
  bool change_at_logon = false;  ///< password-never-expires: a new password at the next logon
  bool reset = false;            ///< unlock: also a new password
  bool dry_run = false;
};

void add_password_options(Command& command, PasswordSource& source) {
  auto* from_input =
      command.add_flag("--password-stdin", source.from_stdin, "The password is a line of standard input");
  command.add_option("--password-file", source.file, "The password is the first line of a file")
      ->type_name("FILE")
      ->excludes(from_input);
}

/// A rehearsal asks for none: the word that stands for one that is asked for is its answer.
std::string default_password(Context& context, session::Session& session, const PasswordSource& source) {
  if (!source.given() && context.rehearses())
    context.dialogs().set_password("PROMPT");
  if (!source.given())
    return session::read_preferences(session).default_password;
  context.dialogs().set_password(read_password(source.from_stdin ? "-" : source.file));
  return "PROMPT";
}

int change(Context& context, const FunctionArguments& arguments, AccountFunction function) {
  if (arguments.dry_run)
    print_steps(context);
  session::Session& session = resource_session(context);
  const batch::AccountOrder order{function, arguments.change_at_logon,
                                  default_password(context, session, arguments.password)};
  return run_over_selection(context, session, arguments.selection, arguments.dry_run,
                            [&](session::RunView& view, const batch::RunHooks& hooks) {
                              batch::change_accounts(session, order, view, hooks);
                            });
}

int unlock(Context& context, const FunctionArguments& arguments) {
  if (arguments.password.given() && !arguments.reset)
    throw UsageError("a password is for --reset-passwords: give that as well");
  if (arguments.dry_run)
    print_steps(context);
  session::Session& session = resource_session(context);
  const batch::UnlockOrder order{arguments.reset, default_password(context, session, arguments.password)};
  return run_over_selection(context, session, arguments.selection, arguments.dry_run,
                            [&](session::RunView& view, const batch::RunHooks& hooks) {
                              batch::unlock_accounts(session, order, view, hooks);
                            });
}

Command* add_function(Command& users, Context& context, const char* name, const char* what,
                      const std::shared_ptr<FunctionArguments>& arguments, AccountFunction function) {
  auto* command = users.add_subcommand(name, what);
  add_selection_options(*command, arguments->selection);
  add_dry_run(*command, arguments->dry_run);
  command->callback(
      [=, &context] { context.set_action([=, &context] { return change(context, *arguments, function); }); });
  return command;
}

}  // namespace

void add_users_account_functions(Command& users, Context& context) {
  const auto add = [&](const char* name, const char* what, AccountFunction function) {
    auto arguments = std::make_shared<FunctionArguments>();
    return std::pair(add_function(users, context, name, what, arguments, function), arguments);
  };
  add("enable", "Enable the accounts", AccountFunction::kEnable);
  add("disable", "Disable the accounts", AccountFunction::kDisable);
  add("password-expires", "Let the passwords expire", AccountFunction::kPasswordExpires);
  const auto [never, of_never] = add("password-never-expires", "Keep the passwords from expiring",
                                     AccountFunction::kPasswordNeverExpires);
  never->add_flag("--change-at-logon", of_never->change_at_logon, "Ask for a new password at the next logon");
  const auto [reset, of_reset] =
      add("reset-password", "Set the default password, unlock, and ask for a new one at the next logon",
          AccountFunction::kResetPassword);
  add_password_options(*reset, of_reset->password);

  auto arguments = std::make_shared<FunctionArguments>();
  auto* command = users.add_subcommand("unlock", "Unlock the accounts");
  add_selection_options(*command, arguments->selection);
  add_dry_run(*command, arguments->dry_run);
  command->add_flag("--reset-passwords", arguments->reset,
                    "Also set the default password, to be changed at the next logon");
  add_password_options(*command, arguments->password);
  command->callback(
      [=, &context] { context.set_action([=, &context] { return unlock(context, *arguments); }); });
}

}  // namespace twk::cli
