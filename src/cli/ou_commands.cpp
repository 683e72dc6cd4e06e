#include "base/text.hpp"
#include "cli/commands.hpp"
#include "cli/context.hpp"
#include "cli/failures.hpp"
#include "controls/tree_view.hpp"
#include "directory/create_ou.hpp"
#include "directory/names.hpp"
#include "directory/tree_path.hpp"
#include "platform/ldap_text.hpp"

namespace twk::cli {
namespace {

struct OuArguments {
  std::string name;
  std::string under;
};

/// "OU=Sales,DC=twk,DC=test" as the name and what it is under.
OuArguments taken_apart(const OuArguments& arguments) {
  const std::string_view name = arguments.name;
  const std::string_view above = directory::name_above(name);
  if (!base::starts_with_fold(name, "OU=") || above.empty())
    return arguments;
  if (!arguments.under.empty())
    throw UsageError("--under DN cannot stand beside a distinguished name, which says it already");
  const std::string_view relative = name.substr(0, name.size() - above.size() - 1);
  return {platform::unescape_dn_value(relative.substr(3)), std::string(above)};
}

int create_ou(Context& context, const OuArguments& given) {
  const OuArguments arguments = taken_apart(given);
  session::Session& session = context.session(Depth::kDomain);
  const Domain domain = context.domain();
  controls::TreeNode* above = session.form1.TreeView1.first();
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

}  // namespace

void add_ou_commands(Command& app, Context& context) {
  auto arguments = std::make_shared<OuArguments>();
  auto* ou = app.add_subcommand("ou", "Organizational units");
  ou->require_subcommand();
  auto* create = ou->add_subcommand("create", "Create an organizational unit");
  create->add_option("NAME", arguments->name, "Its name, or its distinguished name")->required();
  create
      ->add_option("--under", arguments->under,
                   "Organizational unit to create it under; without it the domain")
      ->type_name("DN");
  create->callback(
      [=, &context] { context.set_action([=, &context] { return create_ou(context, *arguments); }); });
}

}  // namespace twk::cli
