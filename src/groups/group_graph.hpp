#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>
#include <unordered_map>
#include <vector>

#include "directory/account_fields.hpp"

/// Groups in groups. All groups of an Active Directory domain are read in one search; what follows costs
/// nothing but the walk.
namespace twk::groups {

struct GroupNode {
  std::string name;
  std::string dn;
  std::optional<std::uint32_t> rid;  ///< of its identifier, by which users name their primary group
  std::vector<std::size_t> above;    ///< the groups that it is a direct member of
  std::vector<std::size_t> below;    ///< the groups that are direct members of it, by name
};

/// A line of a tree of groups.
struct TreeRow {
  std::size_t group = 0;
  std::size_t depth = 0;
  bool circle = false;    ///< it stands above itself, and its members are not shown again
  bool repeated = false;  ///< its members are shown at its first place
};

/// A group that was reached through others.
struct ReachedGroup {
  std::size_t group = 0;
  std::optional<std::size_t> via;  ///< the next one on the way; none for where the walk began
};

class GroupGraph {
 public:
  /// Raises kNotImplementedByProvider in a WinNT domain, and what the directory raises.
  static GroupGraph read(const directory::AccountDomain& domain);

  [[nodiscard]] const std::vector<GroupNode>& nodes() const { return nodes_; }
  /// By its distinguished name.
  [[nodiscard]] std::optional<std::size_t> find(std::string_view dn) const;
  [[nodiscard]] std::optional<std::size_t> find_rid(std::uint32_t rid) const;

  /// The group and all below it, each member right after its group.
  [[nodiscard]] std::vector<TreeRow> tree(std::size_t top) const;
  /// The group and all that are in it, however deep, each once, the nearest first.
  [[nodiscard]] std::vector<ReachedGroup> all_below(std::size_t top) const;
  /// These groups and all that they are in, each once, the nearest first.
  [[nodiscard]] std::vector<ReachedGroup> all_above(const std::vector<std::size_t>& begin) const;

 private:
  std::vector<GroupNode> nodes_;
  std::unordered_map<std::string, std::size_t> by_dn_;  ///< in upper case
  std::unordered_map<std::uint32_t, std::size_t> by_rid_;
};

/// A user in a group or in one of those below it.
struct NestedMember {
  std::string name;
  std::string dn;
  std::string via;  ///< the group whose direct member the user is
  bool primary = false;
};

/// Each user once, by name: through the nearest group.
std::vector<NestedMember> nested_members(const directory::AccountDomain& domain, const GroupGraph& graph,
                                         std::size_t top);

struct EffectiveGroup {
  std::string name;
  std::string via;  ///< the group through which the user is in it; empty for a direct membership
  bool primary = false;
};

/// All groups of a user: direct ones, the primary one, and those that these are in; by name.
std::vector<EffectiveGroup> effective_groups(const directory::AccountDomain& domain,
                                             const platform::ObjectPtr& user);

/// The groups without any member, by primary group either.
std::vector<std::size_t> empty_groups(const directory::AccountDomain& domain, const GroupGraph& graph);

}  // namespace twk::groups
