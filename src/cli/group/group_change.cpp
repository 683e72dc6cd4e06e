#include <functional>
#include <optional>

#include "cli/frame/context.hpp"
#include "cli/frame/rehearsed_steps.hpp"
#include "cli/frame/resource_session.hpp"
#include "cli/group/group_commands.hpp"
#include "cli/terminal/exit_codes.hpp"
#include "cli/terminal/failures.hpp"
#include "groups/change_group.hpp"

namespace twk::cli {
namespace {

struct ChangeArguments {
  std::string group;
  std::string new_name;
  std::string scope;
  std::string kind;
  bool dry_run = false;
};

/// Runs the change over a group, given by its distinguished name.
int change(Context& context, const ChangeArguments& arguments,
           const std::function<groups::GroupOutcome(session::Session&, const std::string& dn)>& run) {
  const Domain domain = context.domain();
  if (!domain.active_directory)
    throw Refused("A group of a WinNT domain can only be made and deleted.");
  const std::string dn = locate_group(domain, arguments.group);
  if (arguments.dry_run)
    print_steps(context);
  session::Session& session = resource_session(context);
  groups::GroupOutcome outcome;
  if (arguments.dry_run) {
    outcome = run(session, dn);
    if (outcome.light == session::kGreen)
      return kExitGreen;
  } else {
    in_log_block(session, [&] {
      outcome = run(session, dn);
      session.log.line(outcome.text);
    });
  }
  return tell_group(context, arguments.group, outcome.light, outcome.text);
}

std::optional<groups::GroupScope> scope_of(const std::string& word) {
  if (word.empty())
    return std::nullopt;
  if (word == "global")
    return groups::GroupScope::kGlobal;
  return word == "universal" ? groups::GroupScope::kUniversal : groups::GroupScope::kDomainLocal;
}

std::optional<groups::GroupKind> kind_of(const std::string& word) {
  if (word.empty())
    return std::nullopt;
  return word == "security" ? groups::GroupKind::kSecurity : groups::GroupKind::kDistribution;
}

int rename_group(Context& context, const ChangeArguments& arguments) {
  return change(context, arguments, [&](session::Session& session, const std::string& dn) {
    return groups::rename_group(session, dn, arguments.new_name);
  });
}

int set_group(Context& context, const ChangeArguments& arguments) {
  if (arguments.scope.empty() && arguments.kind.empty())
    throw UsageError("say what to change: --scope or --kind");
  return change(context, arguments, [&](session::Session& session, const std::string& dn) {
    return groups::change_group_type(session, dn, scope_of(arguments.scope), kind_of(arguments.kind));
  });
}

Command* add_change(Command& group, Context& context, const std::shared_ptr<ChangeArguments>& arguments,
                    const char* name, const char* description, decltype(rename_group)* run) {
  auto* command = group.add_subcommand(name, description);
  command->add_option("GROUP", arguments->group, "Account name, common name or distinguished name")
      ->required();
  command->add_flag("--dry-run", arguments->dry_run, "Print what would be done, in order, and do nothing");
  command->callback(
      [=, &context] { context.set_action([=, &context] { return run(context, *arguments); }); });
  return command;
}

}  // namespace

void add_group_change(Command& group, Context& context) {
  auto arguments = std::make_shared<ChangeArguments>();
  auto* rename = add_change(group, context, arguments, "rename",
                            "Give a group a new common name and account name", rename_group);
  rename->add_option("NEW", arguments->new_name, "The new name")->required();

  auto* set = add_change(group, context, arguments, "set", "Change scope or kind of a group", set_group);
  set->add_option("--scope", arguments->scope, "local (domain-local), global or universal")
      ->type_name("SCOPE")
      ->check(Check::one_of({"local", "domain-local", "global", "universal"}));
  set->add_option("--kind", arguments->kind, "security, or distribution for mail only")
      ->type_name("KIND")
      ->check(Check::one_of({"security", "distribution"}));
  set->footer(
      "A directory changes global to universal and back, and domain local to universal and back;\n"
      "from global to domain local go through universal.");
}

}  // namespace twk::cli
