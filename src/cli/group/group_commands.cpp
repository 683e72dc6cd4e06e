#include "cli/group/group_commands.hpp"

#include "cli/frame/commands.hpp"
#include "cli/frame/context.hpp"
#include "cli/terminal/exit_codes.hpp"
#include "cli/terminal/failures.hpp"
#include "session/loaded_domain.hpp"
#include "session/settings.hpp"

namespace twk::cli {
namespace {

const std::vector<Column> kColumns = {{"name", "Name"},
                                      {"kind", "Kind"},
                                      {"scope", "Scope"},
                                      {"description", "Description"},
                                      {"dn", "Distinguished name"}};

int show_group(Context& context, const std::string& name) {
  std::vector<Column> fields = kColumns;
  fields.push_back({"members", "Members"});
  context.output().details(fields, describe_group(context.domain(), name));
  return kExitGreen;
}

int show_groups(Context& context) {
  context.output().table(kColumns, list_groups(context.domain()));
  return kExitGreen;
}

}  // namespace

session::Session& groups_session(Context& context, bool with_users) {
  const std::string sub_key(session::kADO);
  context.override_setting(sub_key, "SkipUsers", with_users ? "FALSE" : "TRUE");
  context.override_setting(sub_key, "SkipGroups", "FALSE");
  context.override_setting(sub_key, "TemplateGroupsOnly", "FALSE");
  return context.session(with_users ? Depth::kUserLists : Depth::kDomain);
}

groups::GroupRow find_group(Context& context, const session::Session& session, const std::string& name) {
  const Domain domain = context.domain();
  const std::string found = locate_group(domain, name);
  const controls::ListRow* const row = session.domain.all_groups.find_key(
      domain.active_directory ? "LDAP://" + domain.name + "/" + found : found);
  if (row == nullptr)
    throw Refused("The list of groups does not contain " + found + ".");
  return groups::group_of(*row);
}

int tell_group(Context& context, const std::string& group, std::string_view light,
               const std::string& message) {
  if (context.rehearses() && light == session::kGreen)
    return kExitGreen;
  context.output().result({{"group", group}, {"light", light}, {"message", message}},
                          context.output().light(light) + "  " + message);
  return exit_code_of_light(light);
}

void add_group_commands(Command& app, Context& context) {
  auto* group = app.add_subcommand("group", "Show and change the groups of the domain");
  group->require_subcommand();

  auto* list = group->add_subcommand("list", "List the groups");
  add_csv_option(*list, context);
  list->callback([&context] { context.set_action([&context] { return show_groups(context); }); });

  auto name = std::make_shared<std::string>();
  auto* show = group->add_subcommand("show", "Show a group and its members");
  show->add_option("NAME", *name, "Name of the group")->required();
  show->callback([=, &context] { context.set_action([=, &context] { return show_group(context, *name); }); });
  add_group_create(*group, context);
  add_group_delete(*group, context);
  add_group_copy(*group, context);
  add_group_members(*group, context);
  add_group_nested(*group, context);
  add_group_change(*group, context);
}

}  // namespace twk::cli
