#include <unordered_set>

#include "lab/store/entry_node.hpp"

namespace twk::lab {

std::optional<Side> link_side(std::string_view attribute) {
  if (is_same_attribute(attribute, link_attribute(Side::kGroup)))
    return Side::kGroup;
  if (is_same_attribute(attribute, link_attribute(Side::kMember)))
    return Side::kMember;
  return std::nullopt;
}

std::string_view link_attribute(Side side) {
  return side == Side::kGroup ? "member" : "memberOf";
}

const std::string& Entry::dn() const {
  return node_->dn;
}

std::vector<std::string_view> Entry::views(std::string_view attribute) const {
  if (const std::optional<Side> side = link_side(attribute)) {
    std::vector<std::string_view> names;
    for (const Link* link = node_->first_link[at(*side)]; link != nullptr; link = link->next[at(*side)]) {
      names.emplace_back(link->dn(other(*side)));
    }
    return names;
  }
  if (is_same_attribute(attribute, kDistinguishedName))
    return {node_->dn};
  std::vector<std::string_view> found;
  const std::optional<AttributeId> wanted = node_->pool->find(attribute);
  if (!wanted)
    return found;
  node_->pool->each(node_->block, [&](AttributeId id, std::string_view value) {
    if (id == *wanted)
      found.push_back(value);
    return true;
  });
  return found;
}

std::vector<std::string> Entry::values(std::string_view attribute) const {
  const std::vector<std::string_view> found = views(attribute);
  return {found.begin(), found.end()};
}

std::optional<std::string> Entry::value(std::string_view attribute) const {
  if (const std::optional<Side> side = link_side(attribute)) {
    const Link* const link = node_->first_link[at(*side)];
    return link == nullptr ? std::nullopt : std::optional(link->dn(other(*side)));
  }
  const std::vector<std::string_view> found = views(attribute);
  return found.empty() ? std::nullopt : std::optional<std::string>(found.front());
}

bool Entry::has(std::string_view attribute) const {
  const std::optional<Side> side = link_side(attribute);
  return side ? node_->first_link[at(*side)] != nullptr : !views(attribute).empty();
}

std::vector<std::string> Entry::attribute_names() const {
  std::unordered_set<AttributeId> seen;
  std::vector<std::string> names;
  node_->pool->each(node_->block, [&](AttributeId id, std::string_view) {
    if (seen.insert(id).second)
      names.emplace_back(node_->pool->name(id));
    return true;
  });
  for (const Side side : {Side::kGroup, Side::kMember}) {
    if (node_->first_link[at(side)] != nullptr)
      names.emplace_back(link_attribute(side));
  }
  names.emplace_back(kDistinguishedName);
  return names;
}

}  // namespace twk::lab
