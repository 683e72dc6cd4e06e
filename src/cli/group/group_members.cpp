#include <algorithm>

#include "base/text.hpp"
#include "cli/frame/context.hpp"
#include "cli/frame/rehearsed_steps.hpp"
#include "cli/frame/user_runs.hpp"
#include "cli/group/group_commands.hpp"
#include "cli/terminal/exit_codes.hpp"
#include "cli/terminal/failures.hpp"
#include "groups/change_members.hpp"
#include "groups/show_group.hpp"
#include "session/loaded_domain.hpp"

namespace twk::cli {
namespace {

using controls::ListRow;
using controls::ListView;
using session::Session;

const std::vector<Column> kMemberColumns = {
    {"name", "User"}, {"primary", "Primary"}, {"dn", "Distinguished name"}};

struct MemberArguments {
  std::string group;
  std::vector<std::string> users;
  bool dry_run = false;
};

/// One of the two commands that change members.
struct Change {
  ListView& from;
  ListView& to;
  decltype(groups::add_members)& run;
  const char* done;        ///< "added to"
  const char* already_so;  ///< "a member already"
};

/// "CN=jo,DC=twk,DC=test" of a row's key; nothing in a WinNT domain.
std::string dn_of_key(const Domain& domain, const std::string& key) {
  const std::string prefix = "LDAP://" + domain.name + "/";
  return domain.active_directory && base::starts_with_fold(key, prefix) ? key.substr(prefix.size()) : "";
}

/// A group whose users are in the list `Members`.
struct Shown {
  Session& session;
  groups::GroupRow group;
  groups::GroupDetails details;
};

/// Raises `Refused` for a group that cannot be read.
Shown shown_group(Context& context, const std::string& name) {
  Session& session = groups_session(context, true);
  Shown shown{session, find_group(context, session, name), {}};
  shown.details = groups::show_group(session, shown.group);
  if (!shown.details.failure.empty())
    throw Refused(shown.details.failure);
  return shown;
}

int list_members(Context& context, const std::string& name) {
  const Shown shown = shown_group(context, name);
  const ListView& members = shown.session.domain.Members;
  const Domain domain = context.domain();
  std::vector<Json> rows;
  for (std::size_t i = 0; i < members.size(); ++i) {
    const ListRow& row = members.at(i);
    // An NT group lists its members without saying whose primary group it is.
    const Json primary = domain.active_directory ? Json(!row.sub_items.empty()) : Json(nullptr);
    rows.push_back({{"name", row.text}, {"primary", primary}, {"dn", dn_of_key(domain, row.key)}});
  }
  std::stable_sort(rows.begin(), rows.end(), [](const Json& a, const Json& b) {
    return base::upper(a.text_at("name")) < base::upper(b.text_at("name"));
  });
  context.output().table(kMemberColumns, rows);
  if (shown.details.others != 0) {
    complain(std::to_string(shown.details.others) +
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
    if (context_.rehearses() && light == session::kGreen)
      return;
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

/// The users who can be changed, each once. What cannot be done is reported at once.
std::vector<Chosen> choose_users(Context& context, const Change& change,
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
      if (std::ranges::find(chosen, row->key, &Chosen::key) == chosen.end())
        chosen.push_back({row->key, user});
    } else if (change.to.find_key(key) != nullptr) {
      teller.tell(user, session::kYellow, user + " is " + change.already_so + ".");
    } else {
      teller.tell(user, session::kRed, user + " is not among the users that are managed here.");
    }
  }
  return chosen;
}

void tell_user(Teller& teller, const groups::MembersOutcome& outcome, const Chosen& user,
               const std::string& done) {
  if (!outcome.bound)
    return teller.tell(user.name, session::kRed, outcome.text);
  const auto refused = std::ranges::find(outcome.refused, user.key, &groups::RefusedMember::key);
  if (refused == outcome.refused.end())
    return teller.tell(user.name, session::kGreen, user.name + " " + done + ".");
  teller.tell(user.name, refused->number == 0 ? session::kYellow : session::kRed, refused->reason);
}

int change_members(Context& context, const MemberArguments& arguments, bool add) {
  if (arguments.dry_run)
    print_steps(context);
  const Shown shown = shown_group(context, arguments.group);
  session::LoadedDomain& lists = shown.session.domain;
  const Change change =
      add ? Change{lists.NotMembers, lists.Members, groups::add_members, "added to", "a member already"}
          : Change{lists.Members, lists.NotMembers, groups::remove_members, "removed from", "no member"};
  Teller teller(context, arguments.group);
  const std::vector<Chosen> chosen = choose_users(context, change, arguments.users, teller);
  if (chosen.empty())
    return teller.exit_code();
  std::vector<std::string> keys;
  keys.reserve(chosen.size());
  for (const Chosen& user : chosen)
    keys.push_back(user.key);
  const groups::MembersOutcome outcome = change.run(shown.session, shown.group, keys);
  for (const Chosen& user : chosen)
    tell_user(teller, outcome, user, change.done + (" " + arguments.group));
  if (outcome.not_kept.empty())
    return teller.exit_code();
  complain(outcome.not_kept);
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
  add_dry_run(*command, arguments->dry_run);
  command->callback([=, &context] {
    context.set_action([=, &context] { return change_members(context, *arguments, add); });
  });
}

}  // namespace

void add_group_members(Command& group, Context& context) {
  auto name = std::make_shared<std::string>();
  auto* members = group.add_subcommand("members", "List the users in a group, those by primary group marked");
  members->add_option("GROUP", *name, "Account name, common name or distinguished name")->required();
  auto nested = std::make_shared<bool>(false);
  members->add_flag("--nested", *nested,
                    "Also those of the groups in it, however deep, with the group of each");
  add_csv_option(*members, context);
  members->callback([=, &context] {
    context.set_action([=, &context] {
      return *nested ? list_nested_members(context, *name) : list_members(context, *name);
    });
  });
  add_change(group, context, "add-member", "Add users to a group", true);
  add_change(group, context, "remove-member",
             "Remove users from a group, which must not be their primary one", false);
}

}  // namespace twk::cli
