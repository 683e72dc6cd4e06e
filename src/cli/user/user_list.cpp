#include <algorithm>
#include <span>

#include "base/text.hpp"
#include "cli/terminal/exit_codes.hpp"
#include "cli/terminal/failures.hpp"
#include "cli/user/user_columns.hpp"
#include "cli/user/user_commands.hpp"
#include "directory/domain_search.hpp"

namespace twk::cli {
namespace {

struct ListArguments {
  std::string ou;
  std::string columns;
};

const std::vector<Column> kListColumns = {{"name", "Name"},
                                          {"fullName", "Full name"},
                                          {"description", "Description"},
                                          {"disabled", "Disabled"},
                                          {"dn", "Distinguished name"}};

/// The rows in order of the account names.
std::vector<Json> rows_of(const Domain& domain, const std::string& base_dn,
                          const std::vector<UserColumn>& columns) {
  std::vector<std::string> attributes = {"sAMAccountName"};
  for (const UserColumn& column : columns)
    attributes.insert(attributes.end(), column.attributes.begin(), column.attributes.end());
  std::vector<std::pair<std::string, Json>> keyed;
  directory::search_domain(
      domain, base_dn, directory::users_with({}), attributes, [&](directory::FoundRow& row) {
        Json out = Json::object();
        std::span<const platform::Value> values(row);
        std::size_t at = 1;
        for (const UserColumn& column : columns) {
          out[column.column.key] = column.cell(domain, values.subspan(at, column.attributes.size()));
          at += column.attributes.size();
        }
        keyed.emplace_back(base::upper(row[0].text()), std::move(out));
        return true;
      });
  std::stable_sort(keyed.begin(), keyed.end(),
                   [](const auto& a, const auto& b) { return a.first < b.first; });
  std::vector<Json> rows;
  rows.reserve(keyed.size());
  for (auto& [key, row] : keyed)
    rows.push_back(std::move(row));
  return rows;
}

int list_chosen_columns(Context& context, const ListArguments& arguments) {
  const Domain domain = context.domain();
  if (!domain.active_directory)
    throw Refused("A WinNT domain has only the columns of `user list` without --columns.");
  std::vector<UserColumn> chosen;
  std::vector<Column> columns;
  for (const std::string& name : names_in("--columns", arguments.columns)) {
    chosen.push_back(user_column(domain, name));
    columns.push_back(chosen.back().column);
  }
  const std::string base_dn = arguments.ou.empty() ? std::string() : locate_ou(domain, arguments.ou);
  context.output().table(columns, rows_of(domain, base_dn, chosen));
  return kExitGreen;
}

int show_users(Context& context, const ListArguments& arguments) {
  if (!arguments.columns.empty())
    return list_chosen_columns(context, arguments);
  context.output().table(kListColumns, list_users(context.domain(), arguments.ou));
  return kExitGreen;
}

}  // namespace

void add_user_list(Command& user, Context& context) {
  auto arguments = std::make_shared<ListArguments>();
  auto* list = user.add_subcommand("list", "List the users of the domain");
  list->add_option("--ou", arguments->ou, "Only those in this organizational unit and below it")
      ->type_name("DN");
  list->add_flag(
      "--recurse", [] {}, "As for `twk users`; this list always has the users of the units below");
  list->add_option("--columns", arguments->columns,
                   "What to print of each: name, ou, mail, … or any attribute, with commas between")
      ->type_name("NAMES");
  add_csv_option(*list, context);
  list->callback(
      [=, &context] { context.set_action([=, &context] { return show_users(context, *arguments); }); });
}

}  // namespace twk::cli
