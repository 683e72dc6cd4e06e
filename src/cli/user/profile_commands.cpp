#include "cli/frame/commands.hpp"
#include "cli/frame/context.hpp"
#include "cli/frame/user_runs.hpp"
#include "cli/terminal/exit_codes.hpp"
#include "cli/terminal/failures.hpp"
#include "cli/terminal/interrupt.hpp"
#include "cli/terminal/progress.hpp"
#include "cli/user/user_commands.hpp"
#include "lifecycle/popup_commands.hpp"
#include "session/account_windows.hpp"
#include "session/form1.hpp"

namespace twk::cli {
namespace {

struct ProfileArguments {
  std::string name;
  std::string workstation;
  std::string kind;
  bool even_if_shared = false;
  bool dry_run = false;
};

int delete_profile(Context& context, const ProfileArguments& arguments) {
  if (arguments.workstation.empty() != arguments.kind.empty())
    throw UsageError("--workstation and --kind belong together");
  if (arguments.dry_run)
    print_steps(context);
  session::Session& session = context.session(Depth::kDomain);
  if (arguments.dry_run)
    tell_trees(context, session);
  session.runs.even_if_shared = consent_of(arguments.even_if_shared);
  const controls::TreeNode& node = reach_user(context, session, arguments.name);
  session.runs.WKS_Name = arguments.workstation;
  session.runs.WKS_Is_NT40 = arguments.kind == "nt40";
  Progress progress;
  context.dialogs().before_text([&] { progress.clear(); });
  context.dialogs().on_events([&] { session.import.ImportStopped = interrupted(); });
  const auto& status = session.form1.StatusBar1.panel1;
  const auto watch = status.watch([&] { progress.show(status.get()); });
  const bool deleted = arguments.workstation.empty() ? lifecycle::Delete_Server_Profile(session, node)
                                                     : lifecycle::delete_wks_profile(session, node);
  progress.clear();
  context.dialogs().before_text({});
  context.dialogs().on_events({});
  if (!deleted)
    throw Refused(status.get());
  if (arguments.dry_run)
    return kExitGreen;
  context.output().result({{"light", session::kGreen}, {"user", arguments.name}},
                          context.output().light(session::kGreen) + "  Profile of " + node.text + " deleted");
  return kExitGreen;
}

}  // namespace

void add_profile_commands(Command& app, Context& context) {
  auto arguments = std::make_shared<ProfileArguments>();
  auto* profile = app.add_subcommand("profile", "Profiles of users");
  profile->require_subcommand();
  auto* remove =
      profile->add_subcommand("delete", "Delete the profile of a user on the server, or on a workstation");
  remove
      ->add_option("NAME", arguments->name, "Account name, common name, principal name or distinguished name")
      ->required();
  remove->add_option("--workstation", arguments->workstation, "The copy on this workstation")->type_name("W");
  remove->add_option("--kind", arguments->kind, "What the workstation runs: w2k or nt40")
      ->check(Check::one_of({"w2k", "nt40"}))
      ->type_name("WORD");
  add_even_if_shared(*remove, arguments->even_if_shared);
  remove->add_flag("--dry-run", arguments->dry_run, "Print what would be done and do nothing");
  remove->callback(
      [=, &context] { context.set_action([=, &context] { return delete_profile(context, *arguments); }); });
}

}  // namespace twk::cli
