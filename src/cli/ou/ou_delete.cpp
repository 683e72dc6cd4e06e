#include "cli/frame/rehearsed_steps.hpp"
#include "cli/frame/resource_session.hpp"
#include "cli/ou/ou_commands.hpp"
#include "cli/terminal/exit_codes.hpp"
#include "cli/terminal/failures.hpp"
#include "cli/terminal/interrupt.hpp"
#include "cli/terminal/progress.hpp"
#include "directory/units.hpp"

namespace twk::cli {
namespace {

struct DeleteArguments {
  std::string dn;
  bool recursive = false;
  bool dry_run = false;
};

bool confirms(Context& context, const std::string& ou, const directory::UnitContents& contents) {
  std::string question = directory::deletion_question(ou, contents);
  if (contents.users != 0)
    question += " Homes, profiles and mailboxes stay: `twk users delete --ou` with --recurse deletes them.";
  return context.dialogs().MsgBox(question, platform::Buttons::kYesNo, platform::Icon::kQuestion,
                                  "Delete OU") == platform::Answer::kYes;
}

directory::UnitDeletion delete_all(session::Session& session, const std::string& ou) {
  Progress progress;
  return directory::delete_unit_tree(session, ou, [&](const std::string& dn) {
    progress.show("Deleting " + dn);
    session.platform.dialogs.DoEvents();
    return !interrupted();
  });
}

int delete_ou(Context& context, const DeleteArguments& arguments) {
  if (arguments.dry_run)
    print_steps(context);
  session::Session& session = resource_session(context);
  const std::string ou = locate_own_ou(context, arguments.dn);
  const directory::UnitContents contents = directory::count_below_unit(session, ou);
  if (contents.all() != 0 && !arguments.recursive) {
    throw Refused(ou + " is not empty: " + contents.in_words() + " below it. --recursive deletes them too.");
  }
  if (!arguments.dry_run && !confirms(context, ou, contents)) {
    complain(ou + ": nothing was done.");
    return kExitYellow;
  }
  const directory::UnitDeletion deletion = delete_all(session, ou);
  const Json further = {{"dn", ou}, {"deleted", deletion.deleted}};
  if (deletion.reason.empty())
    return tell_light(context, session::kGreen,
                      "Deleted " + ou + (contents.all() == 0 ? "" : " and " + contents.in_words()), further);
  return tell_light(context, session::kRed,
                    ou + " was not deleted: " + deletion.reason + "; " + std::to_string(deletion.deleted) +
                        " of " + std::to_string(contents.all() + 1) + " objects are gone",
                    further);
}

}  // namespace

void add_ou_delete(Command& ou, Context& context) {
  auto arguments = std::make_shared<DeleteArguments>();
  auto* command = ou.add_subcommand("delete", "Delete an organizational unit; asks first");
  command->add_option("DN", arguments->dn, "Its distinguished name")->required();
  command->add_flag("--recursive", arguments->recursive,
                    "With everything in it; otherwise a unit that is not empty is refused");
  add_dry_run(*command, arguments->dry_run);
  command->callback(
      [=, &context] { context.set_action([=, &context] { return delete_ou(context, *arguments); }); });
}

}  // namespace twk::cli
