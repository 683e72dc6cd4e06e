#include "base/text.hpp"
#include "cli/frame/commands.hpp"
#include "cli/frame/context.hpp"
#include "cli/terminal/exit_codes.hpp"
#include "cli/terminal/failures.hpp"
#include "directory/custom_attributes.hpp"

namespace twk::cli {
namespace {

using session::Session;

struct CustomArguments {
  int number = 0;
  std::string name;
  std::string attribute;
};

const std::vector<Column> kCustomColumns = {
    {"number", "Number"}, {"name", "Display name"}, {"attribute", "Attribute"}};

int show_custom_rows(Context& context) {
  const directory::CustomFieldRows fields = directory::read_custom_fields(context.session(Depth::kSettings));
  std::vector<Json> rows;
  for (std::size_t i = 0; i < fields.size(); ++i) {
    if (!fields.at(i).caption.empty())
      rows.push_back(
          {{"number", i + 1}, {"name", fields.at(i).caption}, {"attribute", fields.at(i).attribute}});
  }
  context.output().table(kCustomColumns, rows);
  return kExitGreen;
}

int put_custom_row(Context& context, const CustomArguments& arguments) {
  Session& session = context.session(Depth::kSettings);
  directory::CustomFieldRows rows = directory::read_custom_fields(session);
  rows.at(static_cast<std::size_t>(arguments.number - 1)) = {std::string(base::trim(arguments.name)),
                                                             std::string(base::trim(arguments.attribute))};
  if (const std::string refusal = directory::refused_custom_fields(rows); !refusal.empty())
    throw Refused(refusal);
  const std::string unwritten = directory::write_custom_fields(session, rows);
  if (!unwritten.empty())
    throw Refused("Cannot write the setting " + unwritten + ".");
  if (context.output().json()) {
    const auto& row = rows.at(static_cast<std::size_t>(arguments.number - 1));
    Json answer{{"number", arguments.number}};
    if (row.caption.empty())
      answer["deleted"] = true;
    else
      answer.update({{"name", row.caption}, {"attribute", row.attribute}});
    context.output().result(answer, {});
  }
  return kExitGreen;
}

}  // namespace

void add_custom_commands(Command& app, Context& context) {
  auto arguments = std::make_shared<CustomArguments>();
  auto* custom = app.add_subcommand("custom", "Custom attributes on the user details tab");
  custom->require_subcommand();
  auto* show = custom->add_subcommand("show", "List the fields that are set");
  show->callback([&context] { context.set_action([&context] { return show_custom_rows(context); }); });
  const auto add = [&](const char* name, const char* what) {
    auto* command = custom->add_subcommand(name, what);
    command->add_option("N", arguments->number, "Number of the field")
        ->required()
        ->check(Check::within(1, 4));
    command->callback(
        [=, &context] { context.set_action([=, &context] { return put_custom_row(context, *arguments); }); });
    return command;
  };
  auto* set = add("set", "Show an attribute in a field");
  set->add_option("NAME", arguments->name, "Caption of the field")->required();
  set->add_option("ATTRIBUTE", arguments->attribute, "LDAP name of the attribute")->required();
  add("clear", "Remove a field");
}

}  // namespace twk::cli
