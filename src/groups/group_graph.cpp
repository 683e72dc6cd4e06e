#include "groups/group_graph.hpp"

#include <algorithm>
#include <set>
#include <unordered_set>

#include "base/errors.hpp"
#include "base/text.hpp"
#include "directory/domain_search.hpp"
#include "groups/group_object.hpp"
#include "platform/adsi.hpp"
#include "platform/ldap_text.hpp"

namespace twk::groups {
namespace {

using directory::AccountDomain;
using directory::FoundRow;
using platform::Value;

/// Conditions of one filter.
constexpr std::size_t kMostConditions = 50;

/// The last part of an identifier, little-endian.
std::optional<std::uint32_t> rid_of(const Value& sid) {
  const auto* const bytes = std::get_if<base::Bytes>(&sid.data);
  if (bytes == nullptr || bytes->size() < 12)
    return std::nullopt;
  std::uint32_t rid = 0;
  for (std::size_t i = 1; i <= 4; ++i)
    rid = rid << 8U | (*bytes)[bytes->size() - i];
  return rid;
}

template <typename Row>
void sort_by_name(std::vector<Row>& rows) {
  std::vector<std::pair<std::string, Row>> keyed;
  keyed.reserve(rows.size());
  for (Row& row : rows) {
    std::string key = base::upper(row.name);
    keyed.emplace_back(std::move(key), std::move(row));
  }
  std::stable_sort(keyed.begin(), keyed.end(),
                   [](const auto& a, const auto& b) { return a.first < b.first; });
  std::transform(keyed.begin(), keyed.end(), rows.begin(), [](auto& pair) { return std::move(pair.second); });
}

/// A walk, nearest first, along `next` of each group.
std::vector<ReachedGroup> reach(const std::vector<GroupNode>& nodes, const std::vector<std::size_t>& begin,
                                std::vector<std::size_t> GroupNode::*next) {
  std::vector<ReachedGroup> reached;
  std::vector<bool> seen(nodes.size());
  for (const std::size_t group : begin) {
    if (!seen[group])
      reached.push_back({group, std::nullopt});
    seen[group] = true;
  }
  for (std::size_t i = 0; i < reached.size(); ++i) {
    const std::size_t group = reached[i].group;
    for (const std::size_t other : nodes[group].*next) {
      if (!seen[other])
        reached.push_back({other, group});
      seen[other] = true;
    }
  }
  return reached;
}

}  // namespace

GroupGraph GroupGraph::read(const AccountDomain& domain) {
  if (!domain.active_directory) {
    base::raise(platform::ads_error::kNotImplementedByProvider,
                "The groups of a WinNT domain are not followed into each other.");
  }
  GroupGraph graph;
  std::vector<std::vector<std::string>> above;
  directory::search_domain(domain, {}, directory::groups_with({}),
                           {"Name", "distinguishedName", "objectSid", "memberOf"}, [&](FoundRow& row) {
                             graph.nodes_.push_back({row[0].text(), row[1].text(), rid_of(row[2]), {}, {}});
                             std::vector<std::string>& names = above.emplace_back();
                             for (const Value& group : row[3].list())
                               names.push_back(base::upper(group.text()));
                             return true;
                           });
  for (std::size_t i = 0; i < graph.nodes_.size(); ++i) {
    graph.by_dn_.emplace(base::upper(graph.nodes_[i].dn), i);
    if (graph.nodes_[i].rid)
      graph.by_rid_.emplace(*graph.nodes_[i].rid, i);
  }
  for (std::size_t i = 0; i < graph.nodes_.size(); ++i) {
    for (const std::string& name : above[i]) {
      const auto group = graph.by_dn_.find(name);
      if (group == graph.by_dn_.end())
        continue;
      graph.nodes_[i].above.push_back(group->second);
      graph.nodes_[group->second].below.push_back(i);
    }
  }
  for (GroupNode& node : graph.nodes_) {
    std::sort(node.below.begin(), node.below.end(), [&](std::size_t a, std::size_t b) {
      return base::compare_fold(graph.nodes_[a].name, graph.nodes_[b].name) < 0;
    });
  }
  return graph;
}

std::optional<std::size_t> GroupGraph::find(std::string_view dn) const {
  const auto found = by_dn_.find(base::upper(dn));
  return found == by_dn_.end() ? std::nullopt : std::optional(found->second);
}

std::optional<std::size_t> GroupGraph::find_rid(std::uint32_t rid) const {
  const auto found = by_rid_.find(rid);
  return found == by_rid_.end() ? std::nullopt : std::optional(found->second);
}

std::vector<TreeRow> GroupGraph::tree(std::size_t top) const {
  /// A group whose members are being shown.
  struct Level {
    std::size_t group;
    std::size_t next = 0;
  };
  std::vector<TreeRow> rows = {{top, 0}};
  std::vector<Level> levels = {{top}};
  std::vector<bool> shown(nodes_.size());
  std::vector<bool> on_the_way(nodes_.size());
  shown[top] = on_the_way[top] = true;
  while (!levels.empty()) {
    Level& level = levels.back();
    const std::vector<std::size_t>& below = nodes_[level.group].below;
    if (level.next == below.size()) {
      on_the_way[level.group] = false;
      levels.pop_back();
      continue;
    }
    const std::size_t group = below[level.next++];
    rows.push_back({group, levels.size(), on_the_way[group],
                    shown[group] && !on_the_way[group] && !nodes_[group].below.empty()});
    if (shown[group])
      continue;
    shown[group] = on_the_way[group] = true;
    levels.push_back({group});
  }
  return rows;
}

std::vector<ReachedGroup> GroupGraph::all_below(std::size_t top) const {
  return reach(nodes_, {top}, &GroupNode::below);
}

std::vector<ReachedGroup> GroupGraph::all_above(const std::vector<std::size_t>& begin) const {
  return reach(nodes_, begin, &GroupNode::above);
}

std::vector<NestedMember> nested_members(const AccountDomain& domain, const GroupGraph& graph,
                                         std::size_t top) {
  std::vector<NestedMember> members;
  std::unordered_set<std::string> seen;
  const auto take = [&](std::string name, std::string dn, std::size_t group, bool primary) {
    if (seen.insert(base::upper(dn)).second)
      members.push_back({std::move(name), std::move(dn), graph.nodes()[group].name, primary});
  };
  std::vector<std::string> conditions;
  const auto take_primary = [&] {
    std::string filter;
    for (const std::string& condition : conditions)
      filter += condition;
    directory::search_domain(domain, {}, directory::users_with("(|" + filter + ")"),
                             {"Name", "distinguishedName", "primaryGroupID"}, [&](FoundRow& row) {
                               const auto rid = static_cast<std::uint32_t>(directory::number_of(row[2]));
                               if (const auto group = graph.find_rid(rid))
                                 take(row[0].text(), row[1].text(), *group, true);
                               return true;
                             });
    conditions.clear();
  };
  const std::string prefix = directory::ldap_path(domain, {}) + "/";
  for (const ReachedGroup& reached : graph.all_below(top)) {
    const GroupNode& group = graph.nodes()[reached.group];
    for (const platform::ObjectPtr& member :
         domain.services.directory.GetObject(directory::ldap_path(domain, group.dn))->Members()) {
      if (is_user(*member))
        take(platform::plain_name(member->Name()), member->ADsPath().substr(prefix.size()), reached.group,
             false);
    }
    if (group.rid)
      conditions.push_back("(primaryGroupID=" + base::to_text(static_cast<std::int32_t>(*group.rid)) + ")");
    if (conditions.size() == kMostConditions)
      take_primary();
  }
  if (!conditions.empty())
    take_primary();
  sort_by_name(members);
  return members;
}

std::vector<EffectiveGroup> effective_groups(const AccountDomain& domain, const platform::ObjectPtr& user) {
  const GroupGraph graph = GroupGraph::read(domain);
  std::vector<EffectiveGroup> groups;
  std::vector<std::size_t> begin;
  const auto rid =
      static_cast<std::uint32_t>(directory::number_of(platform::value_or_empty(*user, "primaryGroupID")));
  const std::optional<std::size_t> primary = graph.find_rid(rid);
  if (primary)
    begin.push_back(*primary);
  for (const Value& dn : platform::value_or_empty(*user, "memberOf").list()) {
    if (const auto group = graph.find(dn.text()))
      begin.push_back(*group);
    else  // of another domain, whose own groups are not known here
      groups.push_back({dn.text(), {}, false});
  }
  for (const ReachedGroup& reached : graph.all_above(begin)) {
    groups.push_back({graph.nodes()[reached.group].name,
                      reached.via ? graph.nodes()[*reached.via].name : std::string(),
                      primary == reached.group});
  }
  sort_by_name(groups);
  return groups;
}

std::vector<std::size_t> empty_groups(const AccountDomain& domain, const GroupGraph& graph) {
  std::vector<std::size_t> empty;
  directory::search_domain(domain, {}, directory::groups_with("(!(member=*))"), {"distinguishedName"},
                           [&](FoundRow& row) {
                             if (const auto group = graph.find(row[0].text()))
                               empty.push_back(*group);
                             return true;
                           });
  // Domain Users and Domain Computers have nearly everyone, so one account of each is enough.
  constexpr std::uint32_t kUsual[] = {513, 515};
  std::set<std::uint32_t> primary;
  std::string unusual;
  for (const std::uint32_t rid : kUsual) {
    const std::string condition = "(primaryGroupID=" + base::to_text(rid) + ")";
    unusual += "(!" + condition + ")";
    directory::search_domain(domain, {}, "(&(objectClass=user)" + condition + ")", {"primaryGroupID"},
                             [&](FoundRow&) {
                               primary.insert(rid);
                               return false;
                             });
  }
  directory::search_domain(domain, {}, "(&(objectClass=user)(primaryGroupID=*)" + unusual + ")",
                           {"primaryGroupID"}, [&](FoundRow& row) {
                             primary.insert(static_cast<std::uint32_t>(directory::number_of(row[0])));
                             return true;
                           });
  std::erase_if(empty, [&](std::size_t group) {
    const auto rid = graph.nodes()[group].rid;
    return rid && primary.contains(*rid);
  });
  std::sort(empty.begin(), empty.end(), [&](std::size_t a, std::size_t b) {
    return base::compare_fold(graph.nodes()[a].name, graph.nodes()[b].name) < 0;
  });
  return empty;
}

}  // namespace twk::groups
