#include "cli/frame/rehearsed_steps.hpp"
#include "cli/frame/user_runs.hpp"
#include "cli/terminal/exit_codes.hpp"
#include "cli/terminal/failures.hpp"
#include "cli/user/user_commands.hpp"
#include "lifecycle/rename/new_names.hpp"
#include "lifecycle/rename/rename_record.hpp"

namespace twk::cli {
namespace {

struct RenameArguments {
  std::string name;
  lifecycle::NewNames names;
  bool rename_dirs = false;
  bool even_if_shared = false;
  bool dry_run = false;
};

session::RunOutcome rename_in_domain(session::Session& session, controls::TreeNode& node,
                                     const RenameArguments& arguments, lifecycle::RenameTerms& terms,
                                     session::RunView& view) {
  try {
    return lifecycle::rename_to(session, node, arguments.names, terms, view);
  } catch (const lifecycle::UnfitName& unfit) {
    throw UsageError(arguments.names.principal ? std::string("--upn: ") + unfit.what() : unfit.what());
  }
}

int rename_user(Context& context, const RenameArguments& arguments) {
  if (!arguments.names.any())
    throw UsageError("say what to change: --logon, --upn, --full-name, --first, --last or --display");
  if (arguments.dry_run)
    print_steps(context);
  session::Session& session = context.session(Depth::kNamed);
  lifecycle::RenameTerms terms;
  terms.folders = arguments.rename_dirs;
  terms.run.even_if_shared = consent_of(arguments.even_if_shared);
  if (arguments.dry_run)
    tell_trees(context, terms.run);
  controls::TreeNode& node = reach_renamed_user(context, session, arguments.name);
  const std::string old_text = node.text;
  session.run.user = old_text;
  session::RunOutcome outcome;
  act(session, [&] {
    ConsoleView view(context, session);
    outcome = rename_in_domain(session, node, arguments, terms, view);
  });
  if (!outcome.done && outcome.light.empty())
    throw Refused(old_text + " was not renamed.");
  const std::string_view light = outcome.light.empty() ? session::kGreen : std::string_view(outcome.light);
  const bool green = light == session::kGreen;
  if (green && arguments.dry_run)
    return kExitGreen;
  const std::string message = green ? old_text + " is " + node.text + " now" : outcome.message;
  context.output().result({{"light", light}, {"message", message}, {"user", node.text}, {"was", old_text}},
                          context.output().light(light) + "  " + message);
  return exit_code_of_light(light);
}

}  // namespace

controls::TreeNode& reach_renamed_user(Context& context, session::Session& session, const std::string& name) {
  try {
    return reach_user(context, session, name);
  } catch (const Refused&) {
    const auto record = lifecycle::find_rename_record(session, name);
    if (!record)
      throw;
    controls::TreeNode& node = reach_user(context, session, record->account);
    const Domain domain = context.domain();
    if (lifecycle::record_identifier(bind_user(domain, record->account)) != record->identifier)
      throw;
    return node;
  }
}

void add_user_rename(Command& user, Context& context) {
  auto arguments = std::make_shared<RenameArguments>();
  auto* rename = user.add_subcommand("rename", "Change the names of a user");
  rename
      ->add_option("NAME", arguments->name, "Account name, common name, principal name or distinguished name")
      ->required();
  rename->add_option("--logon", arguments->names.logon, "Account name")->type_name("L");
  rename->add_option("--upn", arguments->names.principal, "Principal name; empty for none")->type_name("U");
  rename
      ->add_option("--full-name", arguments->names.full_name, "Common name; in a WinNT domain the full name")
      ->type_name("F");
  rename->add_option("--first", arguments->names.first, "First name; empty for none")->type_name("F");
  rename->add_option("--last", arguments->names.last, "Last name; empty for none")->type_name("L");
  rename->add_option("--display", arguments->names.display, "Display name; empty for none")->type_name("D");
  rename->add_flag("--rename-dirs", arguments->rename_dirs, "Rename the user's shares and folders too");
  add_even_if_shared(*rename, arguments->even_if_shared);
  add_dry_run(*rename, arguments->dry_run);
  rename->callback(
      [=, &context] { context.set_action([=, &context] { return rename_user(context, *arguments); }); });
}

}  // namespace twk::cli
