#include <algorithm>
#include <unordered_set>

#include "ads/dn.hpp"
#include "base/errors.hpp"
#include "base/text.hpp"
#include "lab/store/entry_tree.hpp"
#include "lab/store/modify_plan.hpp"
#include "platform/directory.hpp"

namespace twk::lab {
namespace {

namespace ads_error = platform::ads_error;

Node& must_find(const EntryTree& tree, std::string_view dn) {
  Node* const node = tree.find(dn);
  if (node == nullptr)
    refuse(ads_error::kNoSuchObject, "No such entry", dn);
  return *node;
}

/// "member" of "member;range=0-1499", as large groups are exported.
std::string_view without_range(std::string_view attribute) {
  if (attribute.find(';') == base::npos)
    return attribute;
  return attribute.substr(0, base::find_fold(attribute, ";range="));
}

/// The stored parent of a new name; null when it does not need one.
Node* parent_for(const EntryTree& tree, std::string_view dn, Origin origin) {
  const std::string_view parent_name = ads::parent_dn(dn);
  Node* const parent = tree.find(parent_name);
  if (parent != nullptr)
    return parent;
  const bool may_be_root = origin == Origin::kFile || tree.size() == 0 || parent_name.empty() ||
                           base::equals_fold(ads::parse_rdn(ads::first_rdn(dn)).type, "DC");
  if (!may_be_root)
    refuse(ads_error::kNoSuchObject, "No such parent", parent_name);
  return nullptr;
}

std::string joined_dn(std::string_view rdn, const Node* parent, std::string_view parent_name) {
  if (parent != nullptr)
    parent_name = parent->dn;
  return parent_name.empty() ? std::string(rdn) : std::string(rdn) + "," + std::string(parent_name);
}

Change prepare_add(EntryTree& tree, const LdifRecord& record, Origin origin) {
  if (ads::split_dn(record.dn).empty())
    refuse(ads_error::kInvalidDn, "An entry without a name", record.dn);
  if (tree.find(record.dn) != nullptr)
    refuse(ads_error::kObjectExists, "The name is in use", record.dn);
  Change change;
  change.type = ChangeType::kAdd;
  change.parent = parent_for(tree, record.dn, origin);
  change.fresh = std::make_unique<Node>(tree.pool());
  Node& node = *change.fresh;
  node.dn = joined_dn(ads::first_rdn(record.dn), change.parent, ads::parent_dn(record.dn));
  LinkPlan links(tree, node, origin);
  std::string block;
  for (const LdifAttribute& attribute : record.attributes) {
    const std::string_view name = without_range(attribute.name);
    if (is_same_attribute(name, kDistinguishedName))
      continue;
    if (const std::optional<Side> side = link_side(name)) {
      if (origin == Origin::kFile) {
        links.add_unchecked(*side, attribute.values);
      } else {
        links.modify(*side, {ModifyKind::kAdd, std::string(name), attribute.values});
      }
      continue;
    }
    std::unordered_set<std::string> keys;
    for (const std::string& value : attribute.values) {
      const bool fresh = attribute.values.size() == 1 || keys.insert(value_key(value)).second;
      if (fresh)
        tree.pool().append(block, tree.pool().intern(name), value);
      if (!fresh && origin == Origin::kCaller)
        refuse(ads_error::kConstraint, "A value twice", attribute.name);
    }
  }
  node.block = std::string(block);
  change.links = links.take();
  return change;
}

Change prepare_remove(const EntryTree& tree, const LdifRecord& record) {
  Node& node = must_find(tree, record.dn);
  if (node.first_child != nullptr)
    refuse(ads_error::kNotOnNonLeaf, "The entry has children", record.dn);
  Change change;
  change.type = ChangeType::kDelete;
  change.node = &node;
  return change;
}

Change prepare_modify(EntryTree& tree, const LdifRecord& record, Origin origin) {
  Change change;
  change.type = ChangeType::kModify;
  change.node = &must_find(tree, record.dn);
  LinkPlan links(tree, *change.node, origin);
  AttributePlan attributes(tree, *change.node, origin);
  for (const Modification& one : record.modifications) {
    if (is_same_attribute(one.attribute, kDistinguishedName)) {
      refuse(ads_error::kUnwilling, "A name is changed by renaming only", record.dn);
    }
    if (const std::optional<Side> side = link_side(one.attribute)) {
      links.modify(*side, one);
    } else {
      attributes.modify(one);
    }
  }
  change.block = attributes.take();
  change.links = links.take();
  return change;
}

bool is_within(const Node* node, const Node& top) {
  while (node != nullptr && node != &top)
    node = node->parent;
  return node == &top;
}

/// The naming attribute and "name" follow the new name.
std::string renamed_block(EntryTree& tree, const Node& node, const ads::Rdn& new_name, bool delete_old) {
  AttributePlan plan(tree, node, Origin::kFile);
  const ads::Rdn old_name = ads::parse_rdn(ads::first_rdn(node.dn));
  const std::string old_key = value_key(old_name.value);
  if (delete_old) {
    std::erase_if(plan.staged(old_name.type),
                  [&](const std::string& value) { return value_key(value) == old_key; });
  }
  std::vector<std::string>& values = plan.staged(new_name.type);
  const std::string new_key = value_key(new_name.value);
  std::erase_if(values, [&](const std::string& value) { return value_key(value) == new_key; });
  values.insert(values.begin(), new_name.value);
  if (node.entry.has("name"))
    plan.staged("name") = {new_name.value};
  return plan.take();
}

Change prepare_rename(EntryTree& tree, const LdifRecord& record) {
  Change change;
  change.type = ChangeType::kModRdn;
  Node& node = must_find(tree, record.dn);
  change.node = &node;
  if (ads::split_dn(record.new_rdn).size() != 1)
    refuse(ads_error::kInvalidDn, "Not a relative name", record.new_rdn);
  const bool moves = record.new_superior && !record.new_superior->empty();
  if (moves) {
    change.parent = &must_find(tree, *record.new_superior);
  } else if (node.parent != &tree.top()) {
    change.parent = node.parent;
  }
  if (is_within(change.parent, node))
    refuse(ads_error::kUnwilling, "An entry cannot go below itself", record.dn);
  change.dn = joined_dn(ads::first_rdn(record.new_rdn), change.parent, ads::parent_dn(node.dn));
  const Node* const taken = tree.find(change.dn);
  if (taken != nullptr && taken != &node)
    refuse(ads_error::kObjectExists, "The name is in use", change.dn);
  change.block =
      renamed_block(tree, node, ads::parse_rdn(ads::first_rdn(record.new_rdn)), record.delete_old_rdn);
  return change;
}

}  // namespace

Change prepare(EntryTree& tree, const LdifRecord& record, Origin origin) {
  switch (record.type) {
    case ChangeType::kDelete:
      return prepare_remove(tree, record);
    case ChangeType::kModify:
      return prepare_modify(tree, record, origin);
    case ChangeType::kModRdn:
      return prepare_rename(tree, record);
    case ChangeType::kContent:
    case ChangeType::kAdd:
      break;
  }
  return prepare_add(tree, record, origin);
}

}  // namespace twk::lab
