#pragma once

#include <array>
#include <cstddef>
#include <cstdint>
#include <memory>
#include <optional>
#include <string>

#include "lab/store/entry.hpp"
#include "lab/store/hash_table.hpp"
#include "lab/store/packed_attributes.hpp"

namespace twk::lab {

struct Node;

/// The two ends of a membership: the group, whose "member" values they are, and the member, whose "memberOf"
/// values.
enum class Side : std::size_t { kGroup, kMember };
constexpr Side other(Side side) {
  return side == Side::kGroup ? Side::kMember : Side::kGroup;
}
constexpr std::size_t at(Side side) {
  return static_cast<std::size_t>(side);
}

/// One membership. It is in a list at each end. When one end is not stored (yet), `text` is its name, and
/// only the other end's list has it.
struct Link {
  std::array<Node*, 2> ends{};  ///< by Side
  std::array<Link*, 2> previous{};
  std::array<Link*, 2> next{};
  HashHook<Link> hook;  ///< by both ends, or by the name of the missing one
  std::unique_ptr<std::string> text;

  [[nodiscard]] bool is_whole() const { return ends[0] != nullptr && ends[1] != nullptr; }
  /// The name of the end at `side`.
  [[nodiscard]] const std::string& dn(Side side) const;
};

/// An entry in memory. Children and memberships are lists that run through the nodes and links.
struct Node {
  explicit Node(const AttributePool& attribute_pool) : entry(*this), pool(&attribute_pool) {}
  Node(const Node&) = delete;
  Node& operator=(const Node&) = delete;

  Entry entry;
  std::string dn;
  HashHook<Node> by_dn;  ///< beside the name: a look-up by it reads both
  std::string block;     ///< packed attributes, without the memberships
  const AttributePool* pool;

  Node* parent = nullptr;
  Node* first_child = nullptr;
  Node* last_child = nullptr;
  Node* previous = nullptr;
  Node* next = nullptr;

  std::array<Link*, 2> first_link{};  ///< by the Side this node is at
  std::array<Link*, 2> last_link{};

  std::size_t slot = 0;        ///< position in the tree's list of nodes
  std::uint64_t sequence = 0;  ///< grows with each entry added
};

inline const std::string& Link::dn(Side side) const {
  return ends[at(side)] ? ends[at(side)]->dn : *text;
}

inline constexpr std::string_view kDistinguishedName = "distinguishedName";

/// The side that an entry with that attribute is on: "member" is the group's. Empty for other
/// attributes.
std::optional<Side> link_side(std::string_view attribute);
std::string_view link_attribute(Side side);

}  // namespace twk::lab
