#include "base/text.hpp"
#include "cli/frame/access_text.hpp"
#include "cli/frame/commands.hpp"
#include "cli/frame/resource_session.hpp"
#include "cli/frame/selection_run.hpp"
#include "cli/terminal/exit_codes.hpp"
#include "cli/terminal/failures.hpp"
#include "platform/access_check.hpp"
#include "resources/account_lookup.hpp"
#include "resources/directory_permissions.hpp"
#include "resources/file_permission.hpp"
#include "session/run_scope.hpp"
#include "stores/side_tables.hpp"

namespace twk::cli {
namespace {

using resources::FilePermission;
using resources::TreeOutcome;
using session::Session;

constexpr std::uint32_t kOwnerAndList =
    platform::security_information::kOwner | platform::security_information::kDacl;
constexpr std::size_t kLargestDescriptor = 0x20000;

struct AclArguments {
  std::string path;
  std::string account;
  std::string access;
  std::optional<std::string> table_user;
  bool replace = false;
  bool recurse = false;
};

platform::SecurityDescriptor read_descriptor(Context& context, const std::string& path) {
  platform::SecurityDescriptor descriptor;
  in_plain_words([&] {
    descriptor = context.services().security.GetFileSecurity(path, kOwnerAndList, kLargestDescriptor);
  });
  return descriptor;
}

int show_acl(Context& context, const AclArguments& arguments) {
  platform::Security& security = context.services().security;
  const platform::SecurityDescriptor descriptor = read_descriptor(context, arguments.path);
  const std::vector<Json> entries = list_entries(security, descriptor, AccessOf::kFolder);
  Json result = {{"path", arguments.path},
                 {"owner", descriptor.owner ? security.LookupAccountSid({}, *descriptor.owner) : ""},
                 {"openToAll", is_open_to_all(descriptor)}};
  if (context.output().json()) {
    result["entries"] = entries;
    context.output().result(result, {});
    return kExitGreen;
  }
  context.output().details({{"owner", "Owner"}, {"openToAll", "Open to all"}}, result);
  context.output().table(entry_columns(AccessOf::kFolder), entries);
  return kExitGreen;
}

int check_acl(Context& context, const AclArguments& arguments) {
  const platform::SecurityDescriptor descriptor = read_descriptor(context, arguments.path);
  std::vector<platform::Sid> identifiers;
  in_plain_words([&] { identifiers = context.services().security.account_identifiers(arguments.account); },
                 arguments.account);
  Json result = {{"path", arguments.path}, {"account", arguments.account}};
  result.update(describe_rights(platform::granted_access(descriptor, identifiers)));
  context.output().details(
      {{"full", "Full Control"}, {"change", "Change"}, {"read", "Read"}, {"write", "Write"}}, result);
  return kExitGreen;
}

/// Runs `work` with the server that is asked for accounts, in a block of the log. The terminal shows a
/// recursion's current name; Ctrl-C ends it after the current folder.
TreeOutcome write_logged(Context& context, Session& session, const std::string& account,
                         const std::function<TreeOutcome(std::string& server)>& work) {
  ConsoleView view(context, session);
  const session::RunScope scope(session, view);
  std::string server = resources::server_for_accounts(session);
  TreeOutcome outcome;
  in_log_block(session, [&] { in_plain_words([&] { outcome = work(server); }, account); });
  return outcome;
}

/// The outcome for a path, and for everything below it if the whole tree was meant.
int tell_outcome(Context& context, const AclArguments& arguments, const TreeOutcome& outcome,
                 std::string message) {
  Json further = {{"path", arguments.path}};
  if (!arguments.recurse)
    return tell_light(context, session::kGreen, message, further);
  further.update({{"written", outcome.written}, {"refused", outcome.refused}, {"stopped", outcome.stopped}});
  if (outcome.stopped)
    message +=
        ": stopped after " + std::to_string(outcome.written) + " files and folders; the rest is unchanged";
  if (outcome.refused > 0)
    message += ": " + std::to_string(outcome.refused) + " refused, the first " + outcome.first_reason;
  const bool whole = !outcome.stopped && outcome.refused == 0;
  return tell_light(context, whole ? session::kGreen : session::kYellow, message, further);
}

void log_tree(Session& session, const std::string& path, const std::string& account) {
  session.log.line("Setting " + account + " permissions on " + path + " and all sub directories");
}

int apply_table(Context& context, const AclArguments& arguments) {
  if (!arguments.account.empty() || !arguments.access.empty() || arguments.replace || arguments.recurse)
    throw UsageError("--from-table takes everything from the table: leave out the other options");
  Session& session = resource_session(context);
  if (stores::read_permissions(session, stores::kPermissionFile).empty())
    throw Refused("The table of permissions has no rows; `twk table set permissions` fills it.");
  read_descriptor(context, arguments.path);
  std::string server = resources::server_for_accounts(session);
  std::int16_t warning = 1;
  bool done = false;
  in_log_block(session, [&] {
    done = resources::Set_Permissions(session, server, arguments.path, *arguments.table_user, warning);
  });
  const Json further = {{"path", arguments.path}};
  if (!done)
    return tell_light(context, session::kRed, with_reasons(session, "Security Failed for " + arguments.path),
                      further);
  if (warning != 1) {
    return tell_light(context, session::kYellow, with_reasons(session, "The table was refused in part"),
                      further);
  }
  return tell_light(context, session::kGreen, "Set Permissions on " + arguments.path, further);
}

/// The word as the table spells it.
std::string_view known_access(const std::string& typed) {
  for (const std::string_view word : {"Full Control", "Change", "Read", "No Access"}) {
    if (base::equals_fold(word, base::trim(typed)))
      return word;
  }
  throw UsageError("--access is Full Control, Change, Read or No Access, not \"" + typed + "\"");
}

int set_acl(Context& context, const AclArguments& arguments) {
  if (arguments.table_user)
    return apply_table(context, arguments);
  if (arguments.account.empty() || arguments.access.empty())
    throw UsageError("give --account A with --access WORD, or --from-table USER");
  FilePermission permission;
  permission.account = arguments.account;
  permission.mode = *resources::mode_of_access_word(known_access(arguments.access));
  if (arguments.recurse && permission.mode == resources::access_mode::kNoAccess) {
    throw Refused(
        "--recurse makes " + arguments.account +
        " the owner of the tree, and an owner can always take back what \"No Access\" denies. Set it on "
        "the folders themselves, without --recurse.");
  }
  permission.replaceAll = arguments.replace;
  permission.recurse = arguments.recurse;
  Session& session = resource_session(context);
  const TreeOutcome outcome = write_logged(context, session, arguments.account, [&](std::string& server) {
    if (arguments.recurse)
      log_tree(session, arguments.path, arguments.account);
    else
      session.log.line("Setting Permissions on " + arguments.path);
    TreeOutcome written = resources::write_file_permission(session, server, arguments.path, permission);
    session.log.line("Set Permissions for " + arguments.account);
    return written;
  });
  return tell_outcome(context, arguments, outcome, "Set Permissions for " + arguments.account);
}

int take_ownership(Context& context, const AclArguments& arguments) {
  const std::string account = arguments.account.empty() ? "Administrators" : arguments.account;
  Session& session = resource_session(context);
  const TreeOutcome outcome = write_logged(context, session, account, [&](std::string& server) {
    if (arguments.recurse) {
      log_tree(session, arguments.path, account);
      return resources::take_tree(session, server, arguments.path, account);
    }
    session.log.line("Setting Owner of Folder " + arguments.path + " to " + account);
    resources::take_owner(session, server, arguments.path, account);
    return TreeOutcome();
  });
  return tell_outcome(context, arguments, outcome, account + " is the owner of " + arguments.path);
}

using Action = int (*)(Context&, const AclArguments&);

Command* add_command(Command& group, Context& context, const std::shared_ptr<AclArguments>& arguments,
                     const char* name, const char* what, Action action) {
  auto* command = group.add_subcommand(name, what);
  command->add_option("PATH", arguments->path, R"(Network path of a file or folder, \\SERVER\SHARE\…)")
      ->required();
  command->callback(
      [=, &context] { context.set_action([=, &context] { return action(context, *arguments); }); });
  return command;
}

}  // namespace

void add_acl_commands(Command& app, Context& context) {
  auto arguments = std::make_shared<AclArguments>();
  auto* acl = app.add_subcommand("acl", "Who may do what with a file or folder");
  acl->require_subcommand();
  add_command(*acl, context, arguments, "show", "Show the owner and the access list", show_acl);

  auto* check = add_command(*acl, context, arguments, "check", "Show what a user can do there", check_acl);
  check->add_option("USER", arguments->account, "Account name, or DOMAIN\\NAME")->required();

  auto* set = add_command(*acl, context, arguments, "set", "Give an account access", set_acl);
  set->add_option("--account", arguments->account, "User or group")->type_name("A");
  set->add_option("--access", arguments->access, "Full Control, Change, Read or No Access")
      ->type_name("WORD");
  set->add_flag("--replace", arguments->replace, "Remove everyone else's access, except the system's own");
  set->add_flag("--recurse", arguments->recurse,
                "Write the list to everything below, too, and make the account the owner");
  set->add_option("--from-table", arguments->table_user,
                  "Apply the table of permissions, as creating this user would")
      ->type_name("USER");
}

void add_owner_commands(Command& app, Context& context) {
  auto arguments = std::make_shared<AclArguments>();
  auto* owner = app.add_subcommand("owner", "Ownership of files and folders");
  owner->require_subcommand();
  auto* take = add_command(*owner, context, arguments, "take", "Make an account the owner", take_ownership);
  take->add_option("--account", arguments->account, "User or group; Administrators if not given")
      ->type_name("A");
  take->add_flag("--recurse", arguments->recurse,
                 "Take over the whole tree: ownership and full control; others lose their access");
}

}  // namespace twk::cli
