#include "cli/frame/context.hpp"
#include "cli/group/group_commands.hpp"
#include "cli/terminal/display.hpp"
#include "cli/terminal/exit_codes.hpp"
#include "cli/terminal/failures.hpp"
#include "groups/group_graph.hpp"

namespace twk::cli {
namespace {

/// The groups of the domain, and the one that was named.
struct Place {
  groups::GroupGraph graph;
  std::size_t group = 0;
};

void require_active_directory(const Domain& domain) {
  if (!domain.active_directory)
    throw Refused("The groups of a WinNT domain are not followed into each other.");
}

Place place_of(const Domain& domain, const std::string& name) {
  require_active_directory(domain);
  const std::string dn = locate_group(domain, name);
  Place place{groups::GroupGraph::read(domain)};
  const auto found = place.graph.find(dn);
  if (!found)
    throw Refused("The directory no longer has the group " + dn + ".");
  place.group = *found;
  return place;
}

int show_tree(Context& context, const std::string& name) {
  const Place place = place_of(context.domain(), name);
  const bool indents = !context.output().json() && !context.output().csv();
  std::vector<Json> rows;
  for (const groups::TreeRow& row : place.graph.tree(place.group)) {
    const groups::GroupNode& group = place.graph.nodes()[row.group];
    std::string text = group.name;
    if (indents) {
      text.insert(0, row.depth * 2, ' ');
      text += row.circle ? "  (circle)" : row.repeated ? "  (see above)" : "";
    }
    rows.push_back({{"name", text},
                    {"depth", row.depth},
                    {"circle", row.circle},
                    {"repeated", row.repeated},
                    {"dn", group.dn}});
  }
  std::vector<Column> columns = {{"name", "Group"}};
  if (!indents)
    columns.insert(columns.end(), {{"depth", "Depth"}, {"circle", "Circle"}, {"repeated", "Repeated"}});
  columns.push_back({"dn", "Distinguished name"});
  context.output().table(columns, rows);
  return kExitGreen;
}

int find_empty(Context& context) {
  const Domain domain = context.domain();
  require_active_directory(domain);
  const auto graph = groups::GroupGraph::read(domain);
  std::vector<Json> rows;
  for (const std::size_t group : groups::empty_groups(domain, graph))
    rows.push_back({{"name", graph.nodes()[group].name}, {"dn", graph.nodes()[group].dn}});
  context.output().table({{"name", "Group"}, {"dn", "Distinguished name"}}, rows);
  complain(std::to_string(rows.size()) + " of " + std::to_string(graph.nodes().size()) +
           " groups have no members");
  return kExitGreen;
}

}  // namespace

int list_nested_members(Context& context, const std::string& name) {
  const Domain domain = context.domain();
  const Place place = place_of(domain, name);
  std::vector<Json> rows;
  for (const groups::NestedMember& member : groups::nested_members(domain, place.graph, place.group)) {
    rows.push_back(
        {{"name", member.name}, {"primary", member.primary}, {"via", member.via}, {"dn", member.dn}});
  }
  context.output().table(
      {{"name", "User"}, {"primary", "Primary"}, {"via", "Member of"}, {"dn", "Distinguished name"}}, rows);
  return kExitGreen;
}

void add_group_nested(Command& group, Context& context) {
  auto name = std::make_shared<std::string>();
  auto* tree = group.add_subcommand("tree", "Show the groups in a group, and those in these, as a tree");
  tree->add_option("GROUP", *name, "Account name, common name or distinguished name")->required();
  add_csv_option(*tree, context);
  tree->callback([=, &context] { context.set_action([=, &context] { return show_tree(context, *name); }); });

  auto* empty = group.add_subcommand("find-empty", "Find the groups without members");
  add_csv_option(*empty, context);
  empty->callback([&context] { context.set_action([&context] { return find_empty(context); }); });
}

}  // namespace twk::cli
