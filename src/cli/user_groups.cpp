#include <algorithm>

#include "base/text.hpp"
#include "cli/exit_codes.hpp"
#include "cli/failures.hpp"
#include "cli/near_matches.hpp"
#include "cli/user_commands.hpp"
#include "directory/user_details.hpp"

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

/// Selects the group in one of the two lists. Raises `Refused` when it is not there.
void select_group(ListView& list, const ListView& other, const std::string& name, const char* elsewhere) {
  const auto rows = list.find_text(name);
  if (rows.size() > 1)
    throw Refused("More than one group is called \"" + name + "\".");
  if (rows.size() == 1) {
    list.set_selected(list.at(list.place_of(*rows.front())), true);
    return;
  }
  if (!other.find_text(name).empty())
    throw Refused("The user is " + std::string(elsewhere) + " the group \"" + name + "\".");
  std::vector<std::string> names;
  for (const ListView* const one : {static_cast<const ListView*>(&list), &other}) {
    for (std::size_t i = 0; i < one->size(); ++i)
      names.push_back(one->at(i).text);
  }
  throw Refused(no_such_text("group", name, names));
}

/// True when every selected group left the list; what refused stands in the status bar.
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
  for (const std::string& group : arguments.add)
    select_group(form.ListView3, form.ListView4, group, "already in");
  for (const std::string& group : arguments.remove)
    select_group(form.ListView4, form.ListView3, group, "not in");
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
  groups->add_option("--add", arguments->add, "Put the user into a group; may be repeated")->type_name("G");
  groups->add_option("--remove", arguments->remove, "Take the user out of a group; may be repeated")
      ->type_name("G");
  groups->callback(
      [=, &context] { context.set_action([=, &context] { return change_groups(context, *arguments); }); });
}

}  // namespace twk::cli
