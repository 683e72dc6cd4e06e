#include <optional>

#include "base/text.hpp"
#include "cli/frame/user_runs.hpp"
#include "cli/terminal/exit_codes.hpp"
#include "cli/terminal/failures.hpp"
#include "cli/user/user_commands.hpp"
#include "lifecycle/rename/rename_nt.hpp"
#include "lifecycle/rename/rename_principal.hpp"
#include "lifecycle/rename/rename_record.hpp"
#include "lifecycle/rename/rename_user.hpp"

namespace twk::cli {
namespace {

struct RenameArguments {
  std::string name;
  std::optional<std::string> logon;
  std::optional<std::string> upn;
  std::optional<std::string> full_name;
  std::optional<std::string> first;
  std::optional<std::string> last;
  std::optional<std::string> display;
  bool rename_dirs = false;
  bool even_if_shared = false;
  bool dry_run = false;
};

void set(std::string& name, const std::optional<std::string>& text) {
  if (text)
    name = *text;
}

/// A name without a suffix keeps the account's own, or gets the domain's.
std::string principal_of(session::Session& session, const std::string& name, const std::string& before) {
  const lifecycle::PrincipalName principal = lifecycle::split_principal(name);
  const std::string own = lifecycle::split_principal(before).suffix;
  std::vector<std::string> suffixes = lifecycle::principal_suffixes(session);
  if (!own.empty() && lifecycle::find_suffix(suffixes, own).empty())
    suffixes.push_back(own);
  std::string suffix = own.empty() ? suffixes.front() : own;
  if (!principal.suffix.empty()) {
    suffix = lifecycle::find_suffix(suffixes, principal.suffix);
    if (suffix.empty()) {
      std::string known;
      for (const std::string& one : suffixes)
        known += (known.empty() ? "" : ", ") + one;
      throw UsageError("--upn: the forest has no suffix " + principal.suffix + "; it has " + known);
    }
  }
  return principal.prefix.empty() ? std::string() : principal.prefix + suffix;
}

session::RunOutcome rename_in_directory(session::Session& session, controls::TreeNode& node,
                                        const RenameArguments& arguments, const session::RunTerms& terms,
                                        session::RunView& view) {
  lifecycle::RenameUserOrder order = lifecycle::rename_order(session, node);
  set(order.names.logon, arguments.logon);
  if (arguments.upn)
    order.names.principal = principal_of(session, *arguments.upn, order.principal_before);
  set(order.names.full_name, arguments.full_name);
  set(order.names.first, arguments.first);
  set(order.names.last, arguments.last);
  set(order.names.display, arguments.display);
  order.full_name_changed = arguments.full_name.has_value();
  order.logon_changed = arguments.logon.has_value();
  order.folders = arguments.rename_dirs;
  order.terms = terms;
  if (lifecycle::has_refused_text(session, order.names))
    return {};
  return lifecycle::rename_user(session, node, order, view);
}

session::RunOutcome rename_in_nt(session::Session& session, controls::TreeNode& node,
                                 const RenameArguments& arguments, const session::RunTerms& terms,
                                 session::RunView& view) {
  if (arguments.upn || arguments.first || arguments.last || arguments.display)
    throw UsageError("an account of this domain has only a logon name and a full name");
  lifecycle::RenameNtOrder order = lifecycle::rename_order_nt(session, node);
  set(order.logon, arguments.logon);
  set(order.full_name, arguments.full_name);
  order.logon_changed = arguments.logon.has_value();
  order.full_name_changed = arguments.full_name.has_value();
  order.folders = arguments.rename_dirs;
  order.terms = terms;
  if (lifecycle::has_refused_text(session, order))
    return {};
  return lifecycle::rename_nt(session, node, order, view);
}

/// The user of that name, or the one who had it before an interrupted renaming.
controls::TreeNode& reach_renamed_user(Context& context, session::Session& session, const std::string& name) {
  try {
    return reach_user(context, session, name);
  } catch (const Refused&) {
    const auto record = lifecycle::find_rename_record(session, name);
    if (!record)
      throw;
    controls::TreeNode& node = reach_user(context, session, record->account);
    const Domain domain = context.domain();
    if (lifecycle::record_identifier(bind_user(domain, record->account)) != record->identifier)
      throw;
    return node;
  }
}

int rename_user(Context& context, const RenameArguments& arguments) {
  if (!arguments.logon && !arguments.upn && !arguments.full_name && !arguments.first && !arguments.last &&
      !arguments.display)
    throw UsageError("say what to change: --logon, --upn, --full-name, --first, --last or --display");
  if (arguments.dry_run)
    print_steps(context);
  session::Session& session = context.session(Depth::kDomain);
  session::RunTerms terms{.even_if_shared = consent_of(arguments.even_if_shared)};
  if (arguments.dry_run)
    tell_trees(context, terms);
  controls::TreeNode& node = reach_renamed_user(context, session, arguments.name);
  const std::string old_text = node.text;
  session::RunOutcome outcome;
  act(session, [&] {
    ConsoleView view(context, session);
    outcome = context.domain().active_directory ? rename_in_directory(session, node, arguments, terms, view)
                                                : rename_in_nt(session, node, arguments, terms, view);
  });
  if (!outcome.done && outcome.light.empty())
    throw Refused(old_text + " was not renamed.");
  const std::string_view light = outcome.light.empty() ? session::kGreen : std::string_view(outcome.light);
  const bool green = light == session::kGreen;
  if (green && arguments.dry_run)
    return kExitGreen;
  const std::string message = green ? old_text + " is " + node.text + " now" : outcome.message;
  context.output().result({{"light", light}, {"message", message}, {"user", node.text}, {"was", old_text}},
                          context.output().light(light) + "  " + message);
  return exit_code_of_light(light);
}

}  // namespace

void add_user_rename(Command& user, Context& context) {
  auto arguments = std::make_shared<RenameArguments>();
  auto* rename = user.add_subcommand("rename", "Change the names of a user");
  rename
      ->add_option("NAME", arguments->name, "Account name, common name, principal name or distinguished name")
      ->required();
  rename->add_option("--logon", arguments->logon, "Account name")->type_name("L");
  rename->add_option("--upn", arguments->upn, "Principal name; empty for none")->type_name("U");
  rename->add_option("--full-name", arguments->full_name, "Common name; in a WinNT domain the full name")
      ->type_name("F");
  rename->add_option("--first", arguments->first, "First name; empty for none")->type_name("F");
  rename->add_option("--last", arguments->last, "Last name; empty for none")->type_name("L");
  rename->add_option("--display", arguments->display, "Display name; empty for none")->type_name("D");
  rename->add_flag("--rename-dirs", arguments->rename_dirs, "Rename the user's shares and folders too");
  add_even_if_shared(*rename, arguments->even_if_shared);
  rename->add_flag("--dry-run", arguments->dry_run, "Print what would be done, in order, and do nothing");
  rename->callback(
      [=, &context] { context.set_action([=, &context] { return rename_user(context, *arguments); }); });
}

}  // namespace twk::cli
