#include "batch/change_groups.hpp"
#include "cli/frame/rehearsed_steps.hpp"
#include "cli/frame/resource_session.hpp"
#include "cli/frame/selection_run.hpp"
#include "cli/terminal/failures.hpp"
#include "cli/users/users_commands.hpp"
#include "directory/names.hpp"
#include "platform/ldap_text.hpp"

namespace twk::cli {
namespace {

struct GroupsArguments {
  std::vector<std::string> add;
  std::vector<std::string> remove;
  SelectionArguments selection;
  bool dry_run = false;
};

/// All must exist: a misspelled group is refused before anybody is changed.
std::vector<groups::GroupRow> locate_all(const Domain& domain, const std::vector<std::string>& names) {
  std::vector<groups::GroupRow> rows;
  for (const std::string& name : names) {
    const std::string found = locate_group(domain, name);
    if (domain.active_directory)
      rows.push_back(
          {"LDAP://" + domain.name + "/" + found, platform::plain_name(directory::relative_name(found))});
    else
      rows.push_back({found, found});
  }
  return rows;
}

int change_groups(Context& context, const GroupsArguments& arguments) {
  if (arguments.add.empty() && arguments.remove.empty())
    throw UsageError("say which groups: give --add G, --remove G or several of them");
  if (arguments.dry_run)
    print_steps(context);
  session::Session& session = resource_session(context);
  const Domain domain = context.domain();
  const batch::GroupsOrder order{locate_all(domain, arguments.add), locate_all(domain, arguments.remove)};
  return run_over_selection(context, session, arguments.selection, arguments.dry_run,
                            [&](session::RunView& view, const batch::RunHooks& hooks) {
                              batch::change_groups(session, order, view, hooks);
                            });
}

}  // namespace

void add_users_groups(Command& users, Context& context) {
  auto arguments = std::make_shared<GroupsArguments>();
  auto* command = users.add_subcommand("groups", "Add users to groups and remove them from others");
  command->add_option("--add", arguments->add, "A group that they join; may be given several times")
      ->type_name("G");
  command->add_option("--remove", arguments->remove, "A group that they leave; may be given several times")
      ->type_name("G");
  add_selection_options(*command, arguments->selection);
  add_dry_run(*command, arguments->dry_run);
  command->callback(
      [=, &context] { context.set_action([=, &context] { return change_groups(context, *arguments); }); });
}

}  // namespace twk::cli
