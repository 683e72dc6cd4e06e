#include "lab/store/entry_tree.hpp"

#include <algorithm>
#include <array>

#include "ads/dn.hpp"
#include "base/text.hpp"
#include "lab/store/dn_hash.hpp"
#include "lab/store/filter.hpp"

namespace twk::lab {
namespace {

std::uint64_t pair_hash(const Node& group, const Node& member) {
  return mix_hash(group.sequence, member.sequence);
}

std::uint64_t folded_hash(std::string_view value) {
  return hash_folded(value);
}

std::uint64_t byte_hash(std::string_view value) {
  return hash_bytes(value);
}

}  // namespace

const Node* next_below(const Node& node, const Node& top) {
  if (node.first_child != nullptr)
    return node.first_child;
  const Node* at_node = &node;
  while (at_node != &top && at_node->next == nullptr)
    at_node = at_node->parent;
  return at_node == &top ? nullptr : at_node->next;
}

EntryTree::EntryTree()
    : top_(pool_),
      by_account_{pool_.intern("sAMAccountName"), folded_hash},
      by_principal_{pool_.intern("userPrincipalName"), folded_hash},
      by_sid_{pool_.intern("objectSid"), byte_hash},
      by_primary_group_{pool_.intern("primaryGroupID"), byte_hash},
      by_name_beginning_{pool_.intern("cn"), beginning_key} {
  top_.by_dn.hash = kHashSeed;
}

// Look-up.

Node* EntryTree::find(std::string_view dn) const {
  return by_dn_.find(hasher_.hash(dn), [&](const Node& node) { return same_dn(node.dn, dn); });
}

void EntryTree::find_each(std::span<const std::string_view> names,
                          const std::function<void(std::size_t i, Node* node)>& visit) const {
  constexpr std::size_t kTogether = 32;
  std::array<std::uint64_t, kTogether> hashes{};
  for (std::size_t start = 0; start < names.size(); start += kTogether) {
    const std::size_t count = std::min(kTogether, names.size() - start);
    for (std::size_t i = 0; i < count; ++i) {
      hashes[i] = hasher_.hash_or_text(names[start + i]);
      by_dn_.fetch(hashes[i]);
    }
    for (std::size_t i = 0; i < count; ++i)
      __builtin_prefetch(by_dn_.first(hashes[i]));
    for (std::size_t i = 0; i < count; ++i) {
      if (const Node* const first = by_dn_.first(hashes[i]))
        __builtin_prefetch(first->dn.data());
    }
    for (std::size_t i = 0; i < count; ++i) {
      const std::string_view name = names[start + i];
      visit(start + i, by_dn_.find(hashes[i], [&](const Node& node) { return same_dn(node.dn, name); }));
    }
  }
}

std::string_view EntryTree::first_value(const Node& node, AttributeId id) const {
  std::string_view found;
  pool_.each(node.block, [&](AttributeId each_id, std::string_view value) {
    if (each_id == id)
      found = value;
    return each_id != id;
  });
  return found;
}

template <typename Visit>
void EntryTree::each_key(const ValueIndex& index, const Node& node, Visit visit) const {
  bool found = false;
  pool_.each(node.block, [&](AttributeId id, std::string_view value) {
    if (id != index.id)
      return !found;
    found = true;
    visit(ValueIndex::Key(index.number(value), node.sequence));
    return true;
  });
}

void EntryTree::build(ValueIndex& index) const {
  index.is_built = true;
  for (const std::unique_ptr<Node>& node : nodes_) {
    each_key(index, *node, [&](const ValueIndex::Key& key) { index.sorted.emplace_back(key, node.get()); });
  }
  std::sort(index.sorted.begin(), index.sorted.end());
}

template <typename Visit>
Node* EntryTree::look_through(const ValueIndex& index, std::uint64_t from, std::uint64_t to,
                              Visit visit) const {
  for (const std::unique_ptr<Node>& node : nodes_) {
    bool found = false;
    each_key(index, *node, [&](const ValueIndex::Key& key) {
      found = found || (key.first >= from && key.first <= to && visit(*node));
    });
    if (found)
      return node.get();
  }
  return nullptr;
}

template <typename Visit>
Node* EntryTree::find_keys(ValueIndex& index, std::uint64_t from, std::uint64_t to, Visit visit) const {
  if (!index.is_built && !std::exchange(index.is_asked, true))
    return look_through(index, from, to, visit);
  if (!index.is_built)
    build(index);
  const auto search = [&](auto entry, auto end) -> Node* {
    for (; entry != end && entry->first.first <= to; ++entry) {
      Node* const node = entry->second;
      if (node != nullptr && visit(*node))
        return node;
    }
    return nullptr;
  };
  const std::pair<ValueIndex::Key, Node*> start({from, 0}, nullptr);
  Node* const found =
      search(std::lower_bound(index.sorted.begin(), index.sorted.end(), start), index.sorted.end());
  return found != nullptr ? found : search(index.later.lower_bound(start.first), index.later.end());
}

template <typename Visit>
Node* EntryTree::find_value(ValueIndex& index, std::string_view value, Visit visit) const {
  const std::uint64_t number = index.number(value);
  return find_keys(index, number, number,
                   [&](const Node& node) { return visit(node, first_value(node, index.id)); });
}

Node* EntryTree::find_account(std::string_view name) const {
  return find_value(by_account_, name,
                    [&](const Node&, std::string_view value) { return base::equals_fold(value, name); });
}

Node* EntryTree::find_principal(std::string_view name) const {
  return find_value(by_principal_, name,
                    [&](const Node&, std::string_view value) { return base::equals_fold(value, name); });
}

Node* EntryTree::find_sid(std::string_view bytes) const {
  return find_value(by_sid_, bytes, [&](const Node&, std::string_view value) { return value == bytes; });
}

std::vector<const Node*> EntryTree::with_primary_group(std::string_view rid) const {
  std::vector<const Node*> found;
  find_value(by_primary_group_, rid, [&](const Node& node, std::string_view value) {
    if (value == rid)
      found.push_back(&node);
    return false;
  });
  return found;
}

std::vector<const Node*> EntryTree::with_name_beginning(std::string_view piece) const {
  std::vector<const Node*> found;
  const auto [from, to] = beginning_keys(piece);
  find_keys(by_name_beginning_, from, to, [&](const Node& node) {
    found.push_back(&node);
    return false;
  });
  return found;
}

Link* EntryTree::find_link(Side side, const Node& node, const Node& end) const {
  const Node& group = side == Side::kGroup ? node : end;
  const Node& member = side == Side::kGroup ? end : node;
  return links_.find(pair_hash(group, member), [&](const Link& link) {
    return link.ends[at(Side::kGroup)] == &group && link.ends[at(Side::kMember)] == &member;
  });
}

Link* EntryTree::find_text_link(Side side, const Node& node, std::string_view text) const {
  return text_links_.find(hasher_.hash_or_text(text), [&](const Link& link) {
    return link.ends[at(side)] == &node && same_dn(*link.text, text);
  });
}

// Change.

void EntryTree::apply(Change change) {
  switch (change.type) {
    case ChangeType::kContent:
    case ChangeType::kAdd:
      add(change);
      break;
    case ChangeType::kDelete:
      remove(*change.node);
      break;
    case ChangeType::kModify:
      forget_keys(*change.node);
      change.node->block = std::move(change.block);
      index_keys(*change.node);
      apply_links(*change.node, change.links);
      break;
    case ChangeType::kModRdn:
      rename(*change.node, change);
      break;
  }
}

void EntryTree::add(Change& change) {
  Node& node = *change.fresh;
  const std::uint64_t hash = change.parent != nullptr
                                 ? hash_below(change.parent->by_dn.hash, ads::first_rdn(node.dn))
                                 : hash_dn(node.dn);
  put_in(std::move(change.fresh), change.parent != nullptr ? *change.parent : top_, hash);
  apply_links(node, change.links);
  settle(node);
}

bool EntryTree::add_packed(Node& parent, std::string_view rdn, std::string_view block,
                           std::span<const std::string_view> members) {
  auto fresh = std::make_unique<Node>(pool_);
  Node& node = *fresh;
  node.dn.reserve(rdn.size() + 1 + parent.dn.size());
  node.dn.append(rdn).append(1, ',').append(parent.dn);
  const std::uint64_t hash = hash_below(parent.by_dn.hash, rdn);
  if (by_dn_.find(hash, [&](const Node& other) { return same_dn(other.dn, node.dn); }) != nullptr)
    return false;
  node.block = block;
  put_in(std::move(fresh), parent, hash);
  if (!members.empty()) {
    std::vector<LinkStep> steps;
    steps.reserve(members.size());
    find_each(members, [&](std::size_t i, Node* end) {
      steps.push_back(
          {LinkStep::Kind::kAdd, Side::kGroup, end, end == nullptr ? std::string(members[i]) : ""});
    });
    apply_links(node, steps);
  }
  settle(node);
  return true;
}

void EntryTree::put_in(std::unique_ptr<Node> fresh, Node& parent, std::uint64_t hash) {
  Node& node = *fresh;
  node.slot = nodes_.size();
  node.sequence = ++last_sequence_;
  nodes_.push_back(std::move(fresh));
  hang_in(node, parent);
  by_dn_.insert(node, hash);
  index_keys(node);
}

void EntryTree::remove(Node& node) {
  for (const Side side : {Side::kGroup, Side::kMember}) {
    while (Link* const link = node.first_link[at(side)])
      destroy(*link);
  }
  take_out(node);
  by_dn_.erase(node);
  forget_keys(node);
  nodes_.back()->slot = node.slot;
  std::swap(nodes_[node.slot], nodes_.back());
  nodes_.pop_back();
}

void EntryTree::rename(Node& node, Change& change) {
  Node& parent = change.parent != nullptr ? *change.parent : top_;
  if (node.parent != &parent || node.parent == &top_) {
    take_out(node);
    node.dn = change.dn;
    hang_in(node, parent);
  }
  node.dn = std::move(change.dn);
  forget_keys(node);
  node.block = std::move(change.block);
  index_keys(node);
  for (const Node* below = &node; below != nullptr; below = next_below(*below, node)) {
    Node& moved = const_cast<Node&>(*below);  // NOLINT: the nodes are this tree's own
    const bool is_root = moved.parent == &top_;
    if (&moved != &node)
      moved.dn = std::string(ads::first_rdn(moved.dn)) + "," + moved.parent->dn;
    by_dn_.erase(moved);
    by_dn_.insert(
        moved, is_root ? hash_dn(moved.dn) : hash_below(moved.parent->by_dn.hash, ads::first_rdn(moved.dn)));
  }
  for (const Node* below = &node; below != nullptr; below = next_below(*below, node)) {
    settle(const_cast<Node&>(*below));  // NOLINT
  }
}

/// Puts the node after the last child of its parent.
void EntryTree::hang_in(Node& node, Node& parent) {
  node.parent = &parent;
  node.next = nullptr;
  node.previous = parent.last_child;
  (parent.last_child != nullptr ? parent.last_child->next : parent.first_child) = &node;
  parent.last_child = &node;
  if (&parent == &top_)
    orphans_.emplace(std::pair(hash_dn(ads::parent_dn(node.dn)), node.sequence), &node);
}

void EntryTree::take_out(Node& node) {
  (node.previous != nullptr ? node.previous->next : node.parent->first_child) = node.next;
  (node.next != nullptr ? node.next->previous : node.parent->last_child) = node.previous;
  if (node.parent == &top_)
    orphans_.erase(std::pair(hash_dn(ads::parent_dn(node.dn)), node.sequence));
}

/// Links to a node what waited for an entry of its name.
void EntryTree::settle(Node& node) {
  if (!orphans_.empty())
    adopt_orphans(node);
  if (!text_links_.empty())
    resolve_links(node);
}

void EntryTree::adopt_orphans(Node& node) {
  const std::uint64_t hash = node.by_dn.hash;
  for (auto found = orphans_.lower_bound({hash, 0}); found != orphans_.end() && found->first.first == hash;) {
    Node& orphan = *found->second;
    ++found;
    if (!same_dn(ads::parent_dn(orphan.dn), node.dn))
      continue;
    take_out(orphan);
    hang_in(orphan, node);
  }
}

void EntryTree::resolve_links(Node& node) {
  std::vector<Link*> waiting;
  text_links_.find(node.by_dn.hash, [&](Link& link) {
    if (same_dn(*link.text, node.dn))
      waiting.push_back(&link);
    return false;
  });
  for (Link* const link : waiting) {
    const Side present = link->ends[at(Side::kGroup)] != nullptr ? Side::kGroup : Side::kMember;
    Node& holder = *link->ends[at(present)];
    if (find_link(present, holder, node) != nullptr) {
      destroy(*link);
      continue;
    }
    text_links_.erase(*link);
    link->text.reset();
    link->ends[at(other(present))] = &node;
    enlist(*link, other(present));
    links_.insert(*link, pair_hash(*link->ends[at(Side::kGroup)], *link->ends[at(Side::kMember)]));
  }
}

void EntryTree::index_keys(Node& node) {
  for (ValueIndex* const index : indexes()) {
    if (index->is_built)
      each_key(*index, node, [&](const ValueIndex::Key& key) { index->later.insert_or_assign(key, &node); });
  }
}

/// Before its attributes change.
void EntryTree::forget_keys(Node& node) {
  for (ValueIndex* const index : indexes()) {
    if (!index->is_built)
      continue;
    each_key(*index, node, [&](const ValueIndex::Key& key) {
      index->later.erase(key);
      const std::pair<ValueIndex::Key, Node*> start(key, nullptr);
      for (auto one = std::lower_bound(index->sorted.begin(), index->sorted.end(), start);
           one != index->sorted.end() && one->first == key; ++one)
        one->second = nullptr;
    });
  }
}

// Memberships.

void EntryTree::apply_links(Node& node, std::vector<LinkStep>& steps) {
  // Where the links of the next steps would be is fetched while this one is taken.
  constexpr std::size_t kAhead = 8;
  for (std::size_t i = 0; i < steps.size(); ++i) {
    LinkStep& step = steps[i];
    if (const Node* const end = i + kAhead < steps.size() ? steps[i + kAhead].end : nullptr)
      links_.fetch(step.side == Side::kGroup ? pair_hash(node, *end) : pair_hash(*end, node));
    if (step.kind == LinkStep::Kind::kAdd) {
      add_link(step.side, node, step);
    } else if (step.kind == LinkStep::Kind::kClear) {
      while (Link* const link = node.first_link[at(step.side)])
        destroy(*link);
    } else {
      Link* const link = step.end != nullptr ? find_link(step.side, node, *step.end)
                                             : find_text_link(step.side, node, step.text);
      if (link != nullptr)
        destroy(*link);
    }
  }
}

void EntryTree::add_link(Side side, Node& node, LinkStep& step) {
  if (step.end != nullptr && find_link(side, node, *step.end) != nullptr)
    return;
  if (free_links_.empty())
    free_links_.push_back(&link_store_.emplace_back());
  Link& link = *free_links_.back();
  free_links_.pop_back();
  link.ends[at(side)] = &node;
  enlist(link, side);
  if (step.end == nullptr) {
    link.text = std::make_unique<std::string>(std::move(step.text));
    text_links_.insert(link, hasher_.hash_or_text(*link.text));
    return;
  }
  link.ends[at(other(side))] = step.end;
  enlist(link, other(side));
  links_.insert(link, pair_hash(*link.ends[at(Side::kGroup)], *link.ends[at(Side::kMember)]));
}

/// Puts the link after the last one of its end at `side`.
void EntryTree::enlist(Link& link, Side side) {
  const std::size_t i = at(side);
  Node& node = *link.ends[i];
  link.next[i] = nullptr;
  link.previous[i] = node.last_link[i];
  (node.last_link[i] != nullptr ? node.last_link[i]->next[i] : node.first_link[i]) = &link;
  node.last_link[i] = &link;
}

void EntryTree::delist(Link& link, Side side) {
  const std::size_t i = at(side);
  if (link.ends[i] == nullptr)
    return;
  Node& node = *link.ends[i];
  (link.previous[i] != nullptr ? link.previous[i]->next[i] : node.first_link[i]) = link.next[i];
  (link.next[i] != nullptr ? link.next[i]->previous[i] : node.last_link[i]) = link.previous[i];
}

void EntryTree::destroy(Link& link) {
  delist(link, Side::kGroup);
  delist(link, Side::kMember);
  (link.is_whole() ? links_ : text_links_).erase(link);
  link = {};
  free_links_.push_back(&link);
}

}  // namespace twk::lab
