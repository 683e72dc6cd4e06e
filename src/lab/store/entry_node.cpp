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

bool Entry::any(std::string_view attribute, const std::function<bool(std::string_view value)>& has_it) const {
  if (const std::optional<Side> side = link_side(attribute)) {
    const Link* link = node_->first_link[at(*side)];
    while (link != nullptr && !has_it(link->dn(other(*side))))
      link = link->next[at(*side)];
    return link != nullptr;
  }
  if (is_same_attribute(attribute, kDistinguishedName))
    return has_it(node_->dn);
  const std::optional<AttributeId> wanted = node_->pool->find(attribute);
  bool found = false;
  if (wanted) {
    bool is_reached = false;
    node_->pool->each(node_->block, [&](AttributeId id, std::string_view value) {
      found = id == *wanted && has_it(value);
      // The values of an attribute lie together.
      const bool is_over = is_reached && id != *wanted;
      is_reached = id == *wanted;
      return !found && !is_over;
    });
  }
  return found;
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
    return id == *wanted || found.empty();
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
  std::string_view first;
  const bool is_there = any(attribute, [&](std::string_view value) {
    first = value;
    return true;
  });
  return is_there ? std::optional<std::string>(first) : std::nullopt;
}

bool Entry::has(std::string_view attribute) const {
  const std::optional<Side> side = link_side(attribute);
  return side ? node_->first_link[at(*side)] != nullptr
              : any(attribute, [](std::string_view) { return true; });
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
