#include "base/text.hpp"
#include "cli/frame/commands.hpp"
#include "cli/frame/context.hpp"
#include "cli/terminal/exit_codes.hpp"
#include "session/editor_windows.hpp"
#include "windows/editors/custom_properties.hpp"

namespace twk::cli {
namespace {

using session::Session;

struct CustomArguments {
  int number = 0;
  std::string name;
  std::string attribute;
};

const std::vector<Column> kColumns = {
    {"number", "Number"}, {"name", "Display name"}, {"attribute", "Attribute"}};

int show_custom_rows(Context& context) {
  Session& session = context.session(Depth::kSettings);
  windows::Custom_Load(session);
  std::vector<Json> rows;
  for (std::size_t i = 0; i < session.custom.ListView1.size(); ++i) {
    const controls::ListRow& row = session.custom.ListView1.at(i);
    if (!row.text.empty())
      rows.push_back({{"number", i + 1}, {"name", row.text}, {"attribute", row.sub_items.front()}});
  }
  context.output().table(kColumns, rows);
  return kExitGreen;
}

/// Fills one row of the window and presses OK.
int put_custom_row(Context& context, const CustomArguments& arguments) {
  Session& session = context.session(Depth::kSettings);
  windows::Custom_Load(session);
  controls::ListView& rows = session.custom.ListView1;
  controls::ListRow& row = rows.at(static_cast<std::size_t>(arguments.number - 1));
  rows.set_text(row, std::string(base::trim(arguments.name)));
  rows.set_sub_item(row, 1, std::string(base::trim(arguments.attribute)));
  return windows::Custom_OK(session) ? kExitGreen : kExitRed;
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
