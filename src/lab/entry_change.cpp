#include <algorithm>
#include <array>
#include <map>
#include <unordered_map>
#include <unordered_set>

#include "base/errors.hpp"
#include "base/text.hpp"
#include "lab/dn.hpp"
#include "lab/entry_tree.hpp"
#include "platform/directory.hpp"

namespace twk::lab {
namespace {

namespace ads_error = platform::ads_error;

[[noreturn]] void refuse(std::uint32_t number, const std::string& what, std::string_view on) {
  throw base::RuntimeError(number, what + ": " + std::string(on));
}

Node& must_find(const EntryTree& tree, std::string_view dn) {
  Node* const node = tree.find(dn);
  if (node == nullptr)
    refuse(ads_error::kNoSuchObject, "No such entry", dn);
  return *node;
}

/// Null for a name that nothing has, and for text that is no name.
Node* find_if_name(const EntryTree& tree, std::string_view text) {
  try {
    return tree.find(text);
  } catch (const base::RuntimeError&) {
    return nullptr;
  }
}

/// "member" of "member;range=0-1499", as large groups are exported.
std::string_view without_range(std::string_view attribute) {
  const std::size_t option = base::find_fold(attribute, ";range=");
  return attribute.substr(0, option);
}

/// The form in which values of an attribute are the same: text folds case, bytes do not.
std::string value_key(std::string_view value) {
  return base::is_valid_utf8(value) ? base::upper(value) : std::string(value);
}

/// Follows the modifications of one entry's memberships, so that each is checked against the ones before it.
class LinkPlan {
 public:
  LinkPlan(const EntryTree& tree, Node& node, Origin origin) : tree_(tree), node_(node), origin_(origin) {}

  void modify(Side side, const Modification& change) {
    if (change.kind == ModifyKind::kAdd) {
      for (const std::string& value : change.values)
        add(side, value, {});
    } else if (change.kind == ModifyKind::kReplace) {
      replace(side, change.values);
    } else if (change.values.empty()) {
      if (!has_any(side))
        refuse(ads_error::kNoSuchAttribute, "No value to delete", node_.dn);
      clear(side);
    } else {
      for (const std::string& value : change.values)
        remove(side, value);
    }
  }

  /// For a new entry from a file: applying it passes over what is there already.
  void add_unchecked(Side side, const std::vector<std::string>& values) {
    for (const std::string& value : values) {
      Node* const end = find_if_name(tree_, value);
      steps_.push_back({LinkStep::Kind::kAdd, side, end, end == nullptr ? value : std::string()});
    }
  }

  std::vector<LinkStep> take() { return std::move(steps_); }

 private:
  struct View {
    bool cleared = false;
    std::unordered_map<std::string, bool> touched;  ///< by normalized name: true when it is there now
    std::size_t added = 0;
  };

  static std::string key_of(std::string_view text) {
    try {
      return normalize_dn(text);
    } catch (const base::RuntimeError&) {
      return base::upper(text);
    }
  }

  [[nodiscard]] bool is_there(Side side, const std::string& key, const Node* end,
                              std::string_view text) const {
    const View& view = views_[at(side)];
    if (const auto found = view.touched.find(key); found != view.touched.end())
      return found->second;
    if (view.cleared)
      return false;
    return end != nullptr ? tree_.find_link(side, node_, *end) != nullptr
                          : tree_.find_text_link(side, node_, text) != nullptr;
  }

  [[nodiscard]] bool has_any(Side side) const {
    const View& view = views_[at(side)];
    return view.added > 0 || (!view.cleared && node_.first_link[at(side)] != nullptr);
  }

  /// `kept` holds the names without an entry that are let through.
  void add(Side side, const std::string& text, const std::unordered_set<std::string>& kept) {
    Node* const end = find_if_name(tree_, text);
    const std::string key = key_of(text);
    if (is_there(side, key, end, text)) {
      if (origin_ == Origin::kFile)
        return;
      refuse(ads_error::kMemberInGroup, "The link is there already", text);
    }
    if (end == nullptr && origin_ == Origin::kCaller && !kept.contains(key)) {
      refuse(ads_error::kNoSuchObject, "A link to an entry that is not there", text);
    }
    views_[at(side)].touched[key] = true;
    ++views_[at(side)].added;
    steps_.push_back({LinkStep::Kind::kAdd, side, end, end == nullptr ? text : std::string()});
  }

  void remove(Side side, const std::string& text) {
    Node* const end = find_if_name(tree_, text);
    const std::string key = key_of(text);
    if (!is_there(side, key, end, text))
      refuse(ads_error::kMemberNotInGroup, "No such link", text);
    views_[at(side)].touched[key] = false;
    steps_.push_back({LinkStep::Kind::kRemove, side, end, end == nullptr ? text : std::string()});
  }

  void clear(Side side) {
    views_[at(side)] = {true, {}, 0};
    steps_.push_back({LinkStep::Kind::kClear, side, nullptr, {}});
  }

  void replace(Side side, const std::vector<std::string>& values) {
    std::unordered_set<std::string> kept;
    for (const std::string& value : values) {
      if (find_if_name(tree_, value) != nullptr)
        continue;
      if (is_there(side, key_of(value), nullptr, value))
        kept.insert(key_of(value));
    }
    clear(side);
    for (const std::string& value : values)
      add(side, value, kept);
  }

  const EntryTree& tree_;
  Node& node_;
  Origin origin_;
  std::array<View, 2> views_;
  std::vector<LinkStep> steps_;
};

/// Follows the modifications of one entry's other attributes.
class AttributePlan {
 public:
  AttributePlan(EntryTree& tree, const Node& node, Origin origin)
      : tree_(tree), node_(node), origin_(origin) {}

  void modify(const Modification& change) {
    std::vector<std::string>& values = staged(change.attribute);
    if (change.kind == ModifyKind::kReplace)
      values.clear();
    if (change.kind == ModifyKind::kDelete) {
      remove(values, change);
    } else {
      add(values, change);
    }
  }

  /// The values as the modifications so far left them.
  std::vector<std::string>& staged(std::string_view attribute) {
    const AttributeId id = tree_.pool().intern(attribute);
    const auto [found, fresh] = staged_.try_emplace(id);
    if (fresh) {
      for (const std::string_view value : node_.entry.views(attribute))
        found->second.emplace_back(value);
    }
    return found->second;
  }

  /// The entry's attributes afterwards.
  std::string take() {
    std::string block;
    std::map<AttributeId, std::vector<std::string>> rest = std::move(staged_);
    std::unordered_set<AttributeId> written;
    tree_.pool().each(node_.block, [&](AttributeId id, std::string_view value) {
      if (written.contains(id))
        return true;
      const auto found = rest.find(id);
      if (found == rest.end()) {
        tree_.pool().append(block, id, value);
        return true;
      }
      append(block, id, found->second);
      rest.erase(found);
      written.insert(id);
      return true;
    });
    for (const auto& [id, values] : rest)
      append(block, id, values);
    block.shrink_to_fit();
    return block;
  }

 private:
  void append(std::string& block, AttributeId id, const std::vector<std::string>& values) {
    for (const std::string& value : values)
      tree_.pool().append(block, id, value);
  }

  void add(std::vector<std::string>& values, const Modification& change) const {
    std::unordered_set<std::string> keys;
    for (const std::string& value : values)
      keys.insert(value_key(value));
    for (const std::string& value : change.values) {
      if (keys.insert(value_key(value)).second) {
        values.push_back(value);
      } else if (origin_ == Origin::kCaller) {
        refuse(ads_error::kConstraint, "A value twice in \"" + change.attribute + "\"", node_.dn);
      }
    }
  }

  void remove(std::vector<std::string>& values, const Modification& change) const {
    std::unordered_set<std::string> keys;
    for (const std::string& value : change.values)
      keys.insert(value_key(value));
    const std::size_t before = values.size();
    if (keys.empty()) {
      values.clear();
    } else {
      std::erase_if(values, [&](const std::string& value) { return keys.contains(value_key(value)); });
    }
    if (before - values.size() < std::max<std::size_t>(keys.size(), 1)) {
      refuse(ads_error::kNoSuchAttribute, "No such value in \"" + change.attribute + "\"", node_.dn);
    }
  }

  EntryTree& tree_;
  const Node& node_;
  Origin origin_;
  std::map<AttributeId, std::vector<std::string>> staged_;
};

/// The stored parent of a new name; null when it may do without one.
Node* parent_for(const EntryTree& tree, std::string_view dn, Origin origin) {
  const std::string_view parent_name = parent_dn(dn);
  Node* const parent = tree.find(parent_name);
  if (parent != nullptr)
    return parent;
  const bool may_be_root =
      origin == Origin::kFile || tree.size() == 0 || base::equals_fold(parse_rdn(first_rdn(dn)).type, "DC");
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
  if (split_dn(record.dn).empty())
    refuse(ads_error::kInvalidDn, "An entry without a name", record.dn);
  if (tree.find(record.dn) != nullptr)
    refuse(ads_error::kObjectExists, "The name is in use", record.dn);
  Change change;
  change.type = ChangeType::kAdd;
  change.parent = parent_for(tree, record.dn, origin);
  change.fresh = std::make_unique<Node>(tree.pool());
  Node& node = *change.fresh;
  node.dn = joined_dn(first_rdn(record.dn), change.parent, parent_dn(record.dn));
  LinkPlan links(tree, node, origin);
  std::string block;
  for (const LdifAttribute& attribute : record.attributes) {
    const std::string_view name = without_range(attribute.name);
    if (base::equals_fold(name, kDistinguishedName))
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
    if (base::equals_fold(one.attribute, kDistinguishedName)) {
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
std::string renamed_block(EntryTree& tree, const Node& node, const Rdn& new_name, bool delete_old) {
  AttributePlan plan(tree, node, Origin::kFile);
  const Rdn old_name = parse_rdn(first_rdn(node.dn));
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
  if (split_dn(record.new_rdn).size() != 1)
    refuse(ads_error::kInvalidDn, "Not a relative name", record.new_rdn);
  const bool moves = record.new_superior && !record.new_superior->empty();
  if (moves) {
    change.parent = &must_find(tree, *record.new_superior);
  } else if (node.parent != &tree.top()) {
    change.parent = node.parent;
  }
  if (is_within(change.parent, node))
    refuse(ads_error::kUnwilling, "An entry cannot go below itself", record.dn);
  change.dn = joined_dn(first_rdn(record.new_rdn), change.parent, parent_dn(node.dn));
  const Node* const taken = tree.find(change.dn);
  if (taken != nullptr && taken != &node)
    refuse(ads_error::kObjectExists, "The name is in use", change.dn);
  change.block = renamed_block(tree, node, parse_rdn(first_rdn(record.new_rdn)), record.delete_old_rdn);
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
