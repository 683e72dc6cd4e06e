#include "cli/commands.hpp"
#include "cli/context.hpp"
#include "cli/exit_codes.hpp"

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

void add_group_commands(CLI::App& app, Context& context) {
  auto* group = app.add_subcommand("group", "Look at the groups of the domain");
  group->require_subcommand(1);

  auto* list = group->add_subcommand("list", "List the groups");
  list->callback([&context] { context.set_action([&context] { return show_groups(context); }); });

  auto name = std::make_shared<std::string>();
  auto* show = group->add_subcommand("show", "Show a group and its members");
  show->add_option("NAME", *name, "Name of the group")->required();
  show->callback([=, &context] { context.set_action([=, &context] { return show_group(context, *name); }); });
}

}  // namespace twk::cli
