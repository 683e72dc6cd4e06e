#include "lab/store/modify_plan.hpp"

#include <algorithm>
#include <utility>

#include "ads/dn.hpp"
#include "base/errors.hpp"
#include "base/text.hpp"
#include "lab/store/dn_hash.hpp"
#include "platform/directory.hpp"

namespace twk::lab {

namespace ads_error = platform::ads_error;

void refuse(std::uint32_t number, const std::string& what, std::string_view on) {
  throw base::RuntimeError(number, what + ": " + std::string(on));
}

std::string value_key(std::string_view value) {
  return base::is_valid_utf8(value) ? folded_key(value) : std::string(value);
}

Node* find_if_name(const EntryTree& tree, std::string_view text) {
  try {
    return tree.find(text);
  } catch (const base::RuntimeError&) {
    return nullptr;
  }
}

void LinkPlan::modify(Side side, const Modification& change) {
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

void LinkPlan::add_unchecked(Side side, const std::vector<std::string>& values) {
  const std::vector<std::string_view> names(values.begin(), values.end());
  tree_.find_each(names, [&](std::size_t i, Node* end) {
    steps_.push_back({LinkStep::Kind::kAdd, side, end, end == nullptr ? values[i] : std::string()});
  });
}

std::string LinkPlan::key_of(std::string_view text) {
  try {
    return ads::normalize_dn(text);
  } catch (const base::RuntimeError&) {
    return base::upper(text);
  }
}

bool LinkPlan::is_there(Side side, const std::string& key, const Node* end, std::string_view text) const {
  const View& view = views_[at(side)];
  if (const auto found = view.touched.find(key); found != view.touched.end())
    return found->second;
  if (view.cleared)
    return false;
  return end != nullptr ? tree_.find_link(side, node_, *end) != nullptr
                        : tree_.find_text_link(side, node_, text) != nullptr;
}

bool LinkPlan::has_any(Side side) const {
  const View& view = views_[at(side)];
  return view.added > 0 || (!view.cleared && node_.first_link[at(side)] != nullptr);
}

void LinkPlan::add(Side side, const std::string& text, const std::unordered_set<std::string>& kept) {
  Node* const end = find_if_name(tree_, text);
  const std::string key = key_of(text);
  if (is_there(side, key, end, text)) {
    if (origin_ == Origin::kFile)
      return;
    refuse(ads_error::kObjectExists, "The link exists already", text);
  }
  if (end == nullptr && origin_ == Origin::kCaller && !kept.contains(key)) {
    refuse(ads_error::kNoSuchObject, "A link to an entry that does not exist", text);
  }
  views_[at(side)].touched[key] = true;
  ++views_[at(side)].added;
  steps_.push_back({LinkStep::Kind::kAdd, side, end, end == nullptr ? text : std::string()});
}

void LinkPlan::remove(Side side, const std::string& text) {
  Node* const end = find_if_name(tree_, text);
  const std::string key = key_of(text);
  if (!is_there(side, key, end, text))
    refuse(ads_error::kMemberNotInGroup, "No such link", text);
  views_[at(side)].touched[key] = false;
  steps_.push_back({LinkStep::Kind::kRemove, side, end, end == nullptr ? text : std::string()});
}

void LinkPlan::clear(Side side) {
  views_[at(side)] = {true, {}, 0};
  steps_.push_back({LinkStep::Kind::kClear, side, nullptr, {}});
}

void LinkPlan::replace(Side side, const std::vector<std::string>& values) {
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

void AttributePlan::modify(const Modification& change) {
  if (change.kind == ModifyKind::kReplace) {
    std::vector<std::string>& values = staged_[tree_.pool().intern(change.attribute)];
    values.clear();
    return add(values, change);
  }
  std::vector<std::string>& values = staged(change.attribute);
  if (change.kind == ModifyKind::kDelete) {
    remove(values, change);
  } else {
    add(values, change);
  }
}

std::vector<std::string>& AttributePlan::staged(std::string_view attribute) {
  const AttributeId id = tree_.pool().intern(attribute);
  const auto [found, fresh] = staged_.try_emplace(id);
  if (fresh) {
    for (const std::string_view value : node_.entry.views(attribute))
      found->second.emplace_back(value);
  }
  return found->second;
}

std::string AttributePlan::take() {
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

void AttributePlan::append(std::string& block, AttributeId id, const std::vector<std::string>& values) {
  for (const std::string& value : values)
    tree_.pool().append(block, id, value);
}

void AttributePlan::add(std::vector<std::string>& values, const Modification& change) const {
  if (values.empty() && change.values.size() == 1) {
    values = change.values;
    return;
  }
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

void AttributePlan::remove(std::vector<std::string>& values, const Modification& change) const {
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

}  // namespace twk::lab
