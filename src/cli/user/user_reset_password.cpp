#include <algorithm>

#include "cli/frame/rehearsed_steps.hpp"
#include "cli/terminal/exit_codes.hpp"
#include "cli/terminal/failures.hpp"
#include "cli/terminal/input.hpp"
#include "cli/terminal/interrupt.hpp"
#include "cli/user/user_commands.hpp"
#include "lifecycle/account/password_reset.hpp"
#include "session/preferences.hpp"

namespace twk::cli {
namespace {

struct ResetArguments {
  std::vector<std::string> names;
  bool password_stdin = false;
  std::string password_file;
  bool dry_run = false;
};

int reset_one(Context& context, session::Session& session, const session::Preferences& preferences,
              const std::string& name) {
  const controls::TreeNode& node = reach_user(context, session, name);
  session.run.user = node.text;
  const session::RunOutcome outcome = lifecycle::reset_password(
      session, {node.text, node.key, preferences.confirm_resets, preferences.default_password});
  const bool asked_no = outcome.light.empty();
  const std::string_view light = asked_no ? session::kYellow : std::string_view(outcome.light);
  const std::string message = outcome.done ? outcome.message
                              : asked_no   ? "Password not reset for " + node.text
                                           : outcome.warnings.front();
  session.status.panel1 = "Ready.";
  if (context.rehearses() && light == session::kGreen)
    return kExitGreen;
  context.output().result({{"user", name}, {"light", light}, {"message", message}},
                          context.output().light(light) + "  " + message);
  return exit_code_of_light(light);
}

int reset_passwords(Context& context, const ResetArguments& arguments) {
  if (arguments.dry_run) {
    print_steps(context);
    context.dialogs().set_password("PROMPT");
  }
  session::Session& session = context.session(Depth::kNamed);
  session::Preferences preferences = session::read_preferences(session);
  preferences.confirm_resets = preferences.confirm_resets && !arguments.dry_run;
  if (arguments.password_stdin || !arguments.password_file.empty()) {
    context.dialogs().set_password(read_password(arguments.password_stdin ? "-" : arguments.password_file));
    preferences.default_password = "PROMPT";
  }
  int exit_code = kExitGreen;
  for (const std::string& name : arguments.names) {
    if (interrupted())
      break;
    exit_code = std::max(exit_code, reset_one(context, session, preferences, name));
  }
  return exit_code;
}

}  // namespace

void add_user_reset_password(Command& user, Context& context) {
  auto arguments = std::make_shared<ResetArguments>();
  auto* reset = user.add_subcommand(
      "reset-password",
      "Set the default password, unlock the account, and ask for a new one at the next logon");
  reset
      ->add_option("NAME", arguments->names,
                   "Account name, common name, principal name or distinguished name; several may be given")
      ->required();
  auto* from_input = reset->add_flag("--password-stdin", arguments->password_stdin,
                                     "The password is a line of standard input");
  reset->add_option("--password-file", arguments->password_file, "The password is the first line of a file")
      ->type_name("FILE")
      ->excludes(from_input);
  add_dry_run(*reset, arguments->dry_run);
  reset->callback(
      [=, &context] { context.set_action([=, &context] { return reset_passwords(context, *arguments); }); });
}

}  // namespace twk::cli
