#include <algorithm>

#include "base/text.hpp"
#include "cli/frame/directory_reader.hpp"
#include "cli/terminal/exit_codes.hpp"
#include "cli/terminal/failures.hpp"
#include "cli/user/user_commands.hpp"
#include "directory/user_details.hpp"
#include "platform/ldap_text.hpp"
#include "session/form1.hpp"

namespace twk::cli {
namespace {

using controls::ListRow;
using controls::ListView;

struct GroupArguments {
  std::string name;
  std::vector<std::string> add;
  std::vector<std::string> remove;
};

const std::vector<Column> kColumns = {{"name", "Group"}, {"primary", "Primary"}};

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
void select_to_add(session::Form1& form, const ChosenGroup& group) {
  if (form.ListView4.find_key(group.key) != nullptr)
    throw Refused("The user is already in the group \"" + group.name + "\".");
  ListView& list = form.ListView3;
  const ListRow* row = list.find_key(group.key);
  if (row == nullptr)
    row = &list.add(group.key, group.name, "W2KGRP");
  list.set_selected(list.at(list.place_of(*row)), true);
}

void select_to_remove(session::Form1& form, const ChosenGroup& group) {
  ListView& list = form.ListView4;
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
bool press(session::Session& session, ListView& list, void (*button)(session::Session&)) {
  bool whole = true;
  if (list.selected() != nullptr)
    act(session, [&] { button(session); });
  while (ListRow* const refused = list.selected()) {
    list.set_selected(*refused, false);
    whole = false;
  }
  return whole;
}

int change_groups(Context& context, const GroupArguments& arguments) {
  session::Session& session = context.session(Depth::kDomain);
  session::Form1& form = session.form1;
  if (!directory::show_user_details(session, reach_user(context, session, arguments.name)))
    throw Refused(form.StatusBar1.panel1);
  const Domain domain = context.domain();
  for (const std::string& group : arguments.add)
    select_to_add(form, find_group(domain, group));
  for (const std::string& group : arguments.remove)
    select_to_remove(form, find_group(domain, group));
  bool whole = press(session, form.ListView4, directory::UM_REMOVE_GROUP_Click);
  whole = press(session, form.ListView3, directory::UM_ADD_GROUP_Click) && whole;
  std::vector<Json> rows;
  for (std::size_t i = 0; i < form.ListView4.size(); ++i) {
    const ListRow& row = form.ListView4.at(i);
    rows.push_back({{"name", row.text}, {"primary", !row.sub_items.empty()}});
  }
  context.output().table(kColumns, rows);
  return whole ? kExitGreen : kExitYellow;
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
  groups->callback(
      [=, &context] { context.set_action([=, &context] { return change_groups(context, *arguments); }); });
}

}  // namespace twk::cli
