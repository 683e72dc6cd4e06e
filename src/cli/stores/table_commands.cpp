#include "cli/frame/commands.hpp"
#include "cli/frame/context.hpp"
#include "cli/frame/rehearsed_steps.hpp"
#include "cli/frame/table_rows.hpp"
#include "cli/terminal/exit_codes.hpp"
#include "cli/terminal/input.hpp"

namespace twk::cli {
namespace {

int show_table(Context& context, const std::string& name) {
  const SideTable table = side_table(name);
  for (const TableRow& row : table.read(context.session(Depth::kDatabases)))
    context.output().result(row.json, row.text);
  return kExitGreen;
}

int set_table(Context& context, const std::string& name, const std::string& file, bool dry_run) {
  const SideTable table = side_table(name);
  const std::vector<std::string> lines = text_lines(read_input(file));
  if (dry_run)
    print_steps(context);
  session::Session& session = context.session(Depth::kDatabases);
  const std::size_t before = table.read(session).size();
  const std::size_t count = table.write(session, lines);
  if (dry_run) {
    const std::string step = "Replace the " + std::to_string(before) + " rows of the table " + table.name +
                             " by " + std::to_string(lines.size());
    context.output().result({{"step", step}}, step);
    return kExitGreen;
  }
  context.output().result({{"table", table.name}, {"rows", count}}, std::to_string(count) + " rows saved.");
  return kExitGreen;
}

}  // namespace

void add_table_commands(Command& app, Context& context) {
  auto name = std::make_shared<std::string>();
  auto file = std::make_shared<std::string>("-");
  auto* table = app.add_subcommand("table", "Show and replace the side tables");
  table->require_subcommand();
  const auto add = [&](const char* verb, const char* what) {
    auto* command = table->add_subcommand(verb, what);
    command->add_option("TABLE", *name, "The table")
        ->required()
        ->check(Check::one_of_folding_case(side_table_names()));
    return command;
  };
  auto* show = add("show", "Print the rows, in the form that set reads");
  show->callback([=, &context] { context.set_action([=, &context] { return show_table(context, *name); }); });

  auto* set = add("set", "Replace all rows by those of a file or of standard input");
  set->add_option("FILE", *file, "The file; standard input if not given");
  set->footer(
      "One row per line:\n"
      "  mail               NAME,VALUE\n"
      "  w2k                p,ATTRIBUTE,VALUE for the account; m,ATTRIBUTE,VALUE for its mail\n"
      "  wts                VALUE, in the order of the thirteen settings\n"
      "  permissions,       ACCOUNT,ACCESS[,OWNER[,NEW]] separated by tabs or commas; ACCESS is Full "
      "Control,\n"
      "  share-permissions  Change, Read or (not of a share) No Access, NEW is yes or no");
  auto dry_run = std::make_shared<bool>(false);
  add_dry_run(*set, *dry_run);
  set->callback([=, &context] {
    context.set_action([=, &context] { return set_table(context, *name, *file, *dry_run); });
  });
}

}  // namespace twk::cli
