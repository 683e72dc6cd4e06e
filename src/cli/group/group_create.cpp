#include <algorithm>
#include <array>

#include "base/text.hpp"
#include "cli/frame/context.hpp"
#include "cli/frame/rehearsed_steps.hpp"
#include "cli/group/group_commands.hpp"
#include "cli/terminal/failures.hpp"
#include "groups/new_group.hpp"

namespace twk::cli {
namespace {

constexpr std::array<std::string_view, 3> kScopes = {"domain-local", "global", "universal"};
constexpr std::array<std::string_view, 2> kKinds = {"security", "distribution"};

struct CreateArguments {
  std::string name;
  std::string description;
  std::string scope{kScopes[1]};
  std::string kind{kKinds[0]};
  bool dry_run = false;
};

template <std::size_t size>
std::size_t place_of(const std::array<std::string_view, size>& words, const std::string& word) {
  return static_cast<std::size_t>(std::find(words.begin(), words.end(), word) - words.begin());
}

/// Raises `Refused` for a kind or a scope that this kind of domain lacks.
groups::NewGroup order_of(const session::Session& session, const CreateArguments& arguments) {
  groups::NewGroup order{arguments.name, arguments.description,
                         static_cast<groups::GroupKind>(place_of(kKinds, arguments.kind)),
                         static_cast<groups::GroupScope>(place_of(kScopes, arguments.scope))};
  const bool has_scope = groups::has_scope(session, order.scope);
  if (!has_scope || !groups::has_kind(session, order.kind)) {
    throw Refused("This kind of domain has no " + (has_scope ? arguments.kind : arguments.scope) +
                  " groups.");
  }
  if (base::trim(arguments.name).empty())
    throw Refused("The name of a group cannot be blank.");
  return order;
}

int create_group(Context& context, const CreateArguments& arguments) {
  if (arguments.dry_run)
    print_steps(context);
  session::Session& session = groups_session(context, false);
  const groups::GroupOutcome outcome = groups::create_group(session, order_of(session, arguments));
  return tell_group(context, arguments.name, outcome.light.empty() ? session::kRed : outcome.light,
                    outcome.text);
}

template <std::size_t size>
Option* add_choice(Command& command, const std::string& name, std::string& value,
                   const std::array<std::string_view, size>& words, const std::string& description) {
  return command.add_option(name, value, description)
      ->check(Check::one_of(std::vector<std::string>(words.begin(), words.end())))
      ->shows_default();
}

}  // namespace

void add_group_create(Command& group, Context& context) {
  auto arguments = std::make_shared<CreateArguments>();
  auto* create = group.add_subcommand("create", "Make a group in the managed OU, or among the users");
  create->add_option("NAME", arguments->name, "Its name")->required();
  create->add_option("--description", arguments->description, "What it is for")
      ->type_name("D")
      ->may_be_empty();
  add_choice(*create, "--scope", arguments->scope, kScopes, "Its scope: domain-local, global or universal")
      ->type_name("SCOPE");
  add_choice(*create, "--kind", arguments->kind, kKinds, "security, or distribution for mail only")
      ->type_name("KIND");
  add_dry_run(*create, arguments->dry_run);
  create->callback(
      [=, &context] { context.set_action([=, &context] { return create_group(context, *arguments); }); });
}

}  // namespace twk::cli
