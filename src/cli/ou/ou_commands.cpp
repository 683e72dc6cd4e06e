#include "cli/ou/ou_commands.hpp"

#include "base/text.hpp"
#include "cli/frame/commands.hpp"
#include "cli/frame/context.hpp"
#include "cli/frame/rehearsed_steps.hpp"
#include "cli/terminal/exit_codes.hpp"
#include "cli/terminal/failures.hpp"
#include "controls/tree_view.hpp"
#include "directory/managed_ou.hpp"
#include "directory/names.hpp"
#include "directory/tree/create_ou.hpp"
#include "directory/tree/tree_path.hpp"
#include "platform/ldap_text.hpp"
#include "session/loaded_domain.hpp"

namespace twk::cli {
namespace {

struct OuArguments {
  std::string name;
  std::string under;
  bool dry_run = false;
};

/// "OU=Sales,DC=twk,DC=test" as the name and its parent.
OuArguments taken_apart(const OuArguments& arguments) {
  const std::string_view name = arguments.name;
  const std::string_view above = directory::name_above(name);
  if (!base::starts_with_fold(name, "OU=") || above.empty())
    return arguments;
  if (!arguments.under.empty())
    throw UsageError("--under DN and a distinguished name exclude each other: the name already says where");
  return {platform::plain_name(directory::relative_name(name)), std::string(above), arguments.dry_run};
}

int create_ou(Context& context, const OuArguments& given) {
  const OuArguments arguments = taken_apart(given);
  if (arguments.dry_run)
    print_steps(context);
  session::Session& session = context.session(Depth::kDomain);
  const Domain domain = context.domain();
  controls::TreeNode* above = session.domain.tree.first();
  if (!arguments.under.empty())
    above = directory::reach_node(session, locate_ou(domain, arguments.under));
  if (above == nullptr)
    throw Refused("The tree does not show " + arguments.under + ".");
  return act_and_tell(
      context, session, [&] { return directory::create_ou(session, *above, arguments.name); },
      [&] {
        return Json{{"under", above->key}};
      });
}

struct ManageArguments {
  std::string name;
  bool without_units_below = false;
  bool machine = false;
  bool whole_domain = false;
};

int tell_limit(Context& context, const session::Session& session) {
  const std::string& ou = session.ManagedOU;
  context.output().result(
      {{"light", session::kGreen},
       {"ou", ou.empty() ? Json(nullptr) : Json(ou)},
       {"unitsBelow", session.ManageSubOUs}},
      ou.empty() ? "The whole domain is managed"
                 : "Managed: " + ou + (session.ManageSubOUs ? " and what is below it" : " alone"));
  return kExitGreen;
}

int manage_ou(Context& context, const ManageArguments& arguments) {
  if (arguments.whole_domain && !arguments.name.empty())
    throw UsageError("--whole-domain and a unit exclude each other");
  session::Session& session = context.session(Depth::kSettings);
  if (arguments.whole_domain)
    directory::lift_limit(session);
  if (!arguments.name.empty()) {
    directory::limit_to_ou(session, locate_ou(context.domain(), arguments.name),
                           !arguments.without_units_below,
                           arguments.machine ? platform::kHiveLocalMachine : platform::kHiveCurrentUser);
  }
  return tell_limit(context, session);
}

void add_manage(Command& ou, Context& context) {
  auto arguments = std::make_shared<ManageArguments>();
  auto* manage =
      ou.add_subcommand("manage", "Limit this program to one organizational unit, or show the limit");
  manage->add_option("DN", arguments->name, "Its distinguished name; without it the limit is shown");
  manage->add_flag("--without-units-below", arguments->without_units_below, "Only the unit itself");
  manage->add_flag("--machine", arguments->machine, "For everyone on this machine");
  manage->add_flag("--whole-domain", arguments->whole_domain, "Lift the limit");
  manage->callback(
      [=, &context] { context.set_action([=, &context] { return manage_ou(context, *arguments); }); });
}

}  // namespace

void add_ou_commands(Command& app, Context& context) {
  auto arguments = std::make_shared<OuArguments>();
  auto* ou = app.add_subcommand("ou", "Organizational units");
  ou->require_subcommand();
  add_ou_list(*ou, context);
  add_ou_change(*ou, context);
  add_ou_delete(*ou, context);
  add_manage(*ou, context);
  auto* create = ou->add_subcommand("create", "Create an organizational unit");
  create->add_option("NAME", arguments->name, "Its name, or its distinguished name")->required();
  create
      ->add_option("--under", arguments->under,
                   "Organizational unit to create it under; without it the domain")
      ->type_name("DN");
  add_dry_run(*create, arguments->dry_run);
  create->callback(
      [=, &context] { context.set_action([=, &context] { return create_ou(context, *arguments); }); });
}

}  // namespace twk::cli
