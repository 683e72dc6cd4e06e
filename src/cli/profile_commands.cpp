#include "cli/commands.hpp"
#include "cli/context.hpp"
#include "cli/exit_codes.hpp"
#include "cli/failures.hpp"
#include "cli/interrupt.hpp"
#include "cli/progress.hpp"
#include "cli/user_commands.hpp"
#include "lifecycle/popup_commands.hpp"

namespace twk::cli {
namespace {

struct ProfileArguments {
  std::string name;
  std::string workstation;
  std::string kind;
};

int delete_profile(Context& context, const ProfileArguments& arguments) {
  if (arguments.workstation.empty() != arguments.kind.empty())
    throw UsageError("--workstation and --kind belong together");
  session::Session& session = context.session(Depth::kDomain);
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
  remove->callback(
      [=, &context] { context.set_action([=, &context] { return delete_profile(context, *arguments); }); });
}

}  // namespace twk::cli
