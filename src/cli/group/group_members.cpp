#include <algorithm>
#include <unordered_map>

#include "base/text.hpp"
#include "cli/frame/context.hpp"
#include "cli/frame/user_runs.hpp"
#include "cli/group/group_commands.hpp"
#include "cli/terminal/exit_codes.hpp"
#include "cli/terminal/failures.hpp"
#include "groups/groups_window.hpp"
#include "session/group_windows.hpp"

namespace twk::cli {
namespace {

using controls::ListRow;
using controls::ListView;
using session::Session;

const std::vector<Column> kColumns = {{"name", "User"}, {"primary", "Primary"}, {"dn", "Distinguished name"}};

struct MemberArguments {
  std::string group;
  std::vector<std::string> users;
};

/// One of the two commands that change members.
struct Change {
  ListView& from;
  ListView& to;
  void (*press)(Session& session);
  const char* done;        ///< "added to"
  const char* already_so;  ///< "a member already"
};

/// "CN=jo,DC=twk,DC=test" of a row's key; nothing in a WinNT domain.
std::string dn_of_key(const Domain& domain, const std::string& key) {
  const std::string prefix = "LDAP://" + domain.name + "/";
  return domain.active_directory && base::starts_with_fold(key, prefix) ? key.substr(prefix.size()) : "";
}

/// Shows the group as the window does. Raises `Refused` when it cannot be read.
Session& show_group(Context& context, const std::string& name) {
  Session& session = groups_session(context, true);
  choose_group(context, session.groups.ListView1, name);
  groups::Groupsfrm_Group_Details_Click(session);
  if (session.groups.ShownGroup.get().empty())
    throw Refused(session.groups.StatusBar1.panel1);
  return session;
}

int list_members(Context& context, const std::string& name) {
  const session::Groupsfrm& window = show_group(context, name).groups;
  const Domain domain = context.domain();
  std::vector<Json> rows;
  for (std::size_t i = 0; i < window.Members.size(); ++i) {
    const ListRow& row = window.Members.at(i);
    // An NT group lists its members without saying whose primary group it is.
    const Json primary = domain.active_directory ? Json(!row.sub_items.empty()) : Json(nullptr);
    rows.push_back({{"name", row.text}, {"primary", primary}, {"dn", dn_of_key(domain, row.key)}});
  }
  std::stable_sort(rows.begin(), rows.end(), [](const Json& a, const Json& b) {
    return base::upper(a.text_at("name")) < base::upper(b.text_at("name"));
  });
  context.output().table(kColumns, rows);
  if (window.OtherMembers != 0) {
    complain(std::to_string(window.OtherMembers) +
             " more members are groups, contacts or users that are not managed here; `twk group show` "
             "lists them.");
  }
  return kExitGreen;
}

/// Prints the outcome of each user, and keeps the exit code of the worst.
class Teller {
 public:
  Teller(Context& context, std::string group) : context_(context), group_(std::move(group)) {}

  void tell(const std::string& user, std::string_view light, const std::string& message) {
    context_.output().result({{"group", group_}, {"user", user}, {"light", light}, {"message", message}},
                             context_.output().light(light) + "  " + message);
    exit_code_ = std::max(exit_code_, exit_code_of_light(light));
  }
  [[nodiscard]] int exit_code() const { return exit_code_; }

 private:
  Context& context_;
  std::string group_;
  int exit_code_ = kExitGreen;
};

/// Users as the command line names them, by key.
struct Chosen {
  std::string key;
  std::string name;
};

/// Selects the rows to move. What cannot be done is reported at once.
std::vector<Chosen> select_users(Context& context, const Change& change,
                                 const std::vector<std::string>& users, Teller& teller) {
  std::vector<Chosen> chosen;
  for (const std::string& user : users) {
    std::string key;
    try {
      key = key_of_user(context, user);
    } catch (const Refused& refusal) {
      teller.tell(user, session::kRed, refusal.what());
      continue;
    }
    if (const ListRow* const row = change.from.find_key(key)) {
      if (!row->selected)
        chosen.push_back({key, user});
      change.from.set_selected(change.from.at(change.from.place_of(*row)), true);
    } else if (change.to.find_key(key) != nullptr) {
      teller.tell(user, session::kYellow, user + " is " + change.already_so + ".");
    } else {
      teller.tell(user, session::kRed, user + " is not among the users that are managed here.");
    }
  }
  return chosen;
}

int change_members(Context& context, const MemberArguments& arguments, bool add) {
  Session& session = show_group(context, arguments.group);
  session::Groupsfrm& window = session.groups;
  const Change change = add ? Change{window.NotMembers, window.Members, groups::Groupsfrm_Command2_Click,
                                     "added to", "a member already"}
                            : Change{window.Members, window.NotMembers, groups::Groupsfrm_Command1_Click,
                                     "removed from", "no member"};
  Teller teller(context, arguments.group);
  const std::vector<Chosen> chosen = select_users(context, change, arguments.users, teller);
  if (chosen.empty())
    return teller.exit_code();
  change.press(session);
  std::unordered_map<std::string, const session::RefusedMember*> refused;
  for (const session::RefusedMember& one : window.refused)
    refused.emplace(base::upper(one.key), &one);
  for (const Chosen& user : chosen) {
    const auto found = refused.find(base::upper(user.key));
    if (change.from.find_key(user.key) == nullptr)
      teller.tell(user.name, session::kGreen, user.name + " " + change.done + " " + arguments.group + ".");
    else if (found == refused.end())  // the group itself could not be bound
      teller.tell(user.name, session::kRed, window.StatusBar1.panel1.get());
    else
      teller.tell(user.name, found->second->number == 0 ? session::kYellow : session::kRed,
                  found->second->reason);
  }
  const auto lost = refused.find(std::string());
  if (lost == refused.end())
    return teller.exit_code();
  complain(lost->second->reason);
  return kExitRed;
}

void add_change(Command& group, Context& context, const std::string& name, const std::string& description,
                bool add) {
  auto arguments = std::make_shared<MemberArguments>();
  auto* command = group.add_subcommand(name, description);
  command->add_option("GROUP", arguments->group, "The group")->required();
  command
      ->add_option("USER", arguments->users,
                   "Account name, common name, principal name or distinguished name; several may be given")
      ->required();
  command->callback([=, &context] {
    context.set_action([=, &context] { return change_members(context, *arguments, add); });
  });
}

}  // namespace

void add_group_members(Command& group, Context& context) {
  auto name = std::make_shared<std::string>();
  auto* members = group.add_subcommand("members", "List the users in a group, those by primary group marked");
  members->add_option("GROUP", *name, "Account name, common name or distinguished name")->required();
  members->callback(
      [=, &context] { context.set_action([=, &context] { return list_members(context, *name); }); });
  add_change(group, context, "add-member", "Add users to a group", true);
  add_change(group, context, "remove-member",
             "Remove users from a group, which must not be their primary one", false);
}

}  // namespace twk::cli
