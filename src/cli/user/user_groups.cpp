#include <algorithm>

#include "base/text.hpp"
#include "cli/frame/directory_reader.hpp"
#include "cli/frame/rehearsed_steps.hpp"
#include "cli/terminal/exit_codes.hpp"
#include "cli/terminal/failures.hpp"
#include "cli/user/user_commands.hpp"
#include "directory/user_details.hpp"
#include "groups/group_graph.hpp"
#include "platform/ldap_text.hpp"
#include "session/loaded_domain.hpp"

namespace twk::cli {
namespace {

using controls::ListRow;
using controls::ListView;

struct GroupArguments {
  std::string name;
  std::vector<std::string> add;
  std::vector<std::string> remove;
  bool dry_run = false;
  bool effective = false;
};

const std::vector<Column> kGroupColumns = {{"name", "Group"}, {"primary", "Primary"}};

/// A group's key in the lists, whichever of its names was given.
struct ChosenGroup {
  std::string key;
  std::string name;
};

ChosenGroup find_group(const Domain& domain, const std::string& name) {
  const std::string found = locate_group(domain, name);
  if (!domain.active_directory)
    return {found, found};
  const std::string path = "LDAP://" + domain.name + "/" + found;
  return {path, platform::plain_name(domain.services.directory.GetObject(path)->Name())};
}

/// Selects the group in the list of those that the user is not in. A group that the session did not load
/// is added to it.
void select_to_add(session::LoadedDomain& domain, const ChosenGroup& group) {
  if (domain.own_groups.find_key(group.key) != nullptr)
    throw Refused("The user is already in the group \"" + group.name + "\".");
  ListView& list = domain.other_groups;
  const ListRow* row = list.find_key(group.key);
  if (row == nullptr)
    row = &list.add(group.key, group.name, "W2KGRP");
  list.set_selected(list.at(list.place_of(*row)), true);
}

void select_to_remove(session::LoadedDomain& domain, const ChosenGroup& group) {
  ListView& list = domain.own_groups;
  const ListRow* const row = list.find_key(group.key);
  if (row == nullptr)
    throw Refused("The user is not in the group \"" + group.name + "\".");
  if (!row->sub_items.empty())
    throw Refused("\"" + group.name +
                  "\" is the user's primary group, which no account can leave. Make another group "
                  "the primary one first.");
  list.set_selected(list.at(list.place_of(*row)), true);
}

/// True when every selected group left the list; the status bar shows refusals.
bool change(session::Session& session, ListView& list, const directory::UserDetails& user,
            decltype(directory::add_to_selected_groups)* change_selected) {
  bool whole = true;
  if (list.selected() != nullptr)
    act(session, [&] { change_selected(session, user); });
  while (ListRow* const refused = list.selected()) {
    list.set_selected(*refused, false);
    whole = false;
  }
  return whole;
}

int change_groups(Context& context, const GroupArguments& arguments) {
  if (arguments.dry_run)
    print_steps(context);
  session::Session& session = context.session(Depth::kNamed);
  const directory::UserDetails user = read_details(context, session, arguments.name);
  session.run.user = user.name;
  session::LoadedDomain& loaded = session.domain;
  const Domain domain = context.domain();
  for (const std::string& group : arguments.add)
    select_to_add(loaded, find_group(domain, group));
  for (const std::string& group : arguments.remove)
    select_to_remove(loaded, find_group(domain, group));
  bool whole = change(session, loaded.own_groups, user, directory::remove_from_selected_groups);
  whole = change(session, loaded.other_groups, user, directory::add_to_selected_groups) && whole;
  if (arguments.dry_run)
    return whole ? kExitGreen : kExitYellow;
  std::vector<Json> rows;
  for (std::size_t i = 0; i < loaded.own_groups.size(); ++i) {
    const ListRow& row = loaded.own_groups.at(i);
    rows.push_back({{"name", row.text}, {"primary", !row.sub_items.empty()}});
  }
  context.output().table(kGroupColumns, rows);
  return whole ? kExitGreen : kExitYellow;
}

int list_effective_groups(Context& context, const GroupArguments& arguments) {
  const Domain domain = context.domain();
  if (!domain.active_directory)
    throw Refused("The groups of a WinNT domain are not followed into each other: leave --effective out.");
  std::vector<Json> rows;
  for (const groups::EffectiveGroup& group :
       groups::effective_groups(domain, bind_user(domain, arguments.name)))
    rows.push_back({{"name", group.name}, {"primary", group.primary}, {"via", group.via}});
  context.output().table({{"name", "Group"}, {"primary", "Primary"}, {"via", "Through"}}, rows);
  return kExitGreen;
}

int work_on_groups(Context& context, const GroupArguments& arguments) {
  if (!arguments.effective)
    return change_groups(context, arguments);
  if (!arguments.add.empty() || !arguments.remove.empty())
    throw UsageError("--effective only lists: leave --add and --remove out");
  return list_effective_groups(context, arguments);
}

}  // namespace

void add_user_groups(Command& user, Context& context) {
  auto arguments = std::make_shared<GroupArguments>();
  auto* groups = user.add_subcommand("groups", "Show and change the groups of a user");
  groups
      ->add_option("NAME", arguments->name, "Account name, common name, principal name or distinguished name")
      ->required();
  groups->add_option("--add", arguments->add, "Add the user to a group; may be repeated")->type_name("G");
  groups->add_option("--remove", arguments->remove, "Remove the user from a group; may be repeated")
      ->type_name("G");
  add_dry_run(*groups, arguments->dry_run);
  groups->add_flag(
      "--effective", arguments->effective,
      "List all groups that count for the user: direct ones, the primary one, and those that they are in");
  add_csv_option(*groups, context);
  groups->callback(
      [=, &context] { context.set_action([=, &context] { return work_on_groups(context, *arguments); }); });
}

}  // namespace twk::cli
