#include "base/errors.hpp"
#include "cli/frame/access_text.hpp"
#include "cli/frame/commands.hpp"
#include "cli/frame/rehearsed_steps.hpp"
#include "cli/frame/resource_session.hpp"
#include "cli/parser/near_matches.hpp"
#include "cli/terminal/exit_codes.hpp"
#include "cli/terminal/failures.hpp"
#include "resources/share502.hpp"

namespace twk::cli {
namespace {

using platform::ShareInfo502;

const std::vector<Column> kColumns = {
    {"name", "Name"}, {"path", "Path"}, {"remark", "Remark"}, {"administrative", "Administrative"}};

struct ShareArguments {
  std::string server;
  std::string name;
  std::string path;
  std::string remark;
  std::optional<std::string> table_user;
  bool dry_run = false;
};

Json describe(const ShareInfo502& share) {
  return {{"name", share.shi502_netname},
          {"path", share.shi502_path},
          {"remark", share.shi502_remark},
          {"administrative", (share.shi502_type & platform::kAdministrativeShare) != 0}};
}

std::string network_name(const ShareArguments& arguments) {
  const std::size_t slashes = arguments.server.starts_with("\\\\") ? 2 : 0;
  return "\\\\" + arguments.server.substr(slashes) + "\\" + arguments.name;
}

/// Calls of a server; a missing server is a refusal.
void ask_server(const ShareArguments& arguments, const std::function<void()>& calls) {
  in_plain_words([&] {
    try {
      calls();
    } catch (const base::RuntimeError& failure) {
      if (failure.number() == platform::network_error::kBadNetPath)
        throw Refused("There is no server " + arguments.server + ".");
      throw;
    }
  });
}

std::vector<ShareInfo502> all_shares(Context& context, const ShareArguments& arguments) {
  std::vector<ShareInfo502> shares;
  ask_server(arguments, [&] { shares = context.services().network.NetShareEnum(arguments.server); });
  return shares;
}

ShareInfo502 require_share(Context& context, const ShareArguments& arguments) {
  ShareInfo502 share;
  ask_server(arguments, [&] {
    try {
      share = context.services().network.NetShareGetInfo(arguments.server, arguments.name);
    } catch (const base::RuntimeError& failure) {
      if (failure.number() != platform::network_error::kShareNotFound)
        throw;
      std::vector<std::string> names;
      for (const ShareInfo502& one : all_shares(context, arguments))
        names.push_back(one.shi502_netname);
      throw Refused(no_such_text("share", arguments.name, names));
    }
  });
  return share;
}

int list_shares(Context& context, const ShareArguments& arguments) {
  std::vector<Json> rows;
  for (const ShareInfo502& share : all_shares(context, arguments))
    rows.push_back(describe(share));
  context.output().table(kColumns, rows);
  return kExitGreen;
}

int show_share(Context& context, const ShareArguments& arguments) {
  const ShareInfo502 share = require_share(context, arguments);
  Json result = describe(share);
  std::vector<Json> entries;
  if (const auto& descriptor = share.shi502_security_descriptor)
    entries = list_entries(context.services().security, *descriptor, AccessOf::kShare);
  result["defaultList"] = !share.shi502_security_descriptor.has_value();
  if (context.output().json()) {
    result["entries"] = entries;
    context.output().result(result, {});
    return kExitGreen;
  }
  std::vector<Column> fields = kColumns;
  fields.push_back({"defaultList", "Server's default list"});
  context.output().details(fields, result);
  context.output().table(entry_columns(AccessOf::kShare), entries);
  return kExitGreen;
}

int add_share(Context& context, const ShareArguments& arguments) {
  if (arguments.dry_run)
    print_steps(context);
  session::Session& session = resource_session(context);
  ShareInfo502 share = resources::share_of_folder(arguments.name, arguments.path, arguments.remark);
  resources::ShareList list;
  in_log_block(session, [&] {
    session.log.line("Creating Shares: " + network_name(arguments));
    if (arguments.table_user) {
      list = resources::share_list_of_table(session, *arguments.table_user);
      if (!list.descriptor)
        throw Refused(network_name(arguments) + " was not made: " + list.reason);
      share.shi502_security_descriptor = std::move(list.descriptor);
    }
    ask_server(arguments, [&] { session.platform.network.NetShareAdd(arguments.server, share); });
  });
  const bool whole = list.result == resources::ShareResult::kMade;
  const std::string made = "Created the share " + network_name(arguments);
  return tell_light(context, whole ? session::kGreen : session::kYellow,
                    whole ? made : made + ": " + list.reason, {{"share", network_name(arguments)}});
}

int delete_share(Context& context, const ShareArguments& arguments) {
  if (arguments.dry_run)
    print_steps(context);
  require_share(context, arguments);
  const std::string name = network_name(arguments);
  if (!arguments.dry_run &&
      context.dialogs().MsgBox("Stop sharing " + name + "? Its files stay.", platform::Buttons::kYesNo,
                               platform::Icon::kQuestion, "Delete Share") != platform::Answer::kYes)
    return kExitRed;
  session::Session& session = resource_session(context);
  in_log_block(session, [&] {
    session.log.line("Deleting Share: " + name);
    ask_server(arguments, [&] { session.platform.network.NetShareDel(arguments.server, arguments.name); });
  });
  return tell_light(context, session::kGreen, "Deleted the share " + name, {{"share", name}});
}

}  // namespace

void add_share_commands(Command& app, Context& context) {
  auto arguments = std::make_shared<ShareArguments>();
  auto* share = app.add_subcommand("share", "Shares of the file servers");
  share->require_subcommand();
  const auto add = [&](const char* name, const char* what, bool names_share, auto action) {
    auto* command = share->add_subcommand(name, what);
    command->add_option("SERVER", arguments->server, "Name of the server")->required();
    if (names_share)
      command->add_option("NAME", arguments->name, "Name of the share")->required();
    command->callback(
        [=, &context] { context.set_action([=, &context] { return action(context, *arguments); }); });
    return command;
  };
  add_csv_option(*add("list", "List the shares of a server", false, list_shares), context);
  add("show", "Show a share and its access list", true, show_share);
  auto* made = add("add", "Share a folder", true, add_share);
  made->add_option("PATH", arguments->path, "The folder as the server sees it, such as D:\\Users")
      ->required();
  made->add_option("--remark", arguments->remark, "Comment")->type_name("TEXT")->may_be_empty();
  made->add_option("--table", arguments->table_user,
                   "Use the list of the table of share permissions, as creating this user would; otherwise "
                   "the server's default")
      ->type_name("USER");
  auto* removed = add("delete", "Stop sharing a folder; asks first", true, delete_share);
  add_dry_run(*made, arguments->dry_run);
  add_dry_run(*removed, arguments->dry_run);
}

}  // namespace twk::cli
