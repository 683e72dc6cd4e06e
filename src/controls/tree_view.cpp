#include "controls/tree_view.hpp"

#include <algorithm>

#include "base/errors.hpp"
#include "base/text.hpp"
#include "controls/drawing_off.hpp"

namespace twk::controls {
namespace {

using TreeKind = TreeChange::Kind;

/// Where a child goes among the others of its parent.
std::size_t place_for(const TreeNode* parent, const std::vector<TreeNode*>& siblings,
                      const std::string& text) {
  if (parent == nullptr || !parent->sorted)
    return siblings.size();
  const auto before = [](const std::string& wanted, const TreeNode* node) {
    return base::compare_fold(wanted, node->text) < 0;
  };
  if (!siblings.empty() && !before(text, siblings.back()))
    return siblings.size();
  return static_cast<std::size_t>(std::upper_bound(siblings.begin(), siblings.end(), text, before) -
                                  siblings.begin());
}

void number_from(const std::vector<TreeNode*>& siblings, std::size_t first) {
  for (std::size_t i = first; i < siblings.size(); ++i)
    siblings[i]->place = static_cast<std::uint32_t>(i);
}

[[noreturn]] void not_unique(const std::string& key) {
  throw base::RuntimeError(base::error::kKeyNotUnique, "Key is not unique in collection: " + key);
}

}  // namespace

TreeNode& TreeView::add(TreeNode* parent, std::string key, std::string text, SharedText image) {
  if (!key.empty() && by_key_.contains(std::string_view(key)))
    not_unique(key);
  std::vector<TreeNode*>& siblings = siblings_below(parent);
  const std::size_t place = place_for(parent, siblings, text);
  tell(TreeKind::kInserting, parent, place);
  nodes_.emplace_back();
  TreeNode& node = nodes_.back();
  node.key = std::move(key);
  node.text = std::move(text);
  node.image = image;
  node.parent = parent;
  node.self = std::prev(nodes_.end());
  if (!node.key.empty())
    by_key_.insert(&node);
  by_text_.insert(&node);
  siblings.insert(siblings.begin() + static_cast<std::ptrdiff_t>(place), &node);
  number_from(siblings, place);
  tell(TreeKind::kInserted, parent, place);
  return node;
}

TreeNode& TreeView::add_under(std::string_view parent_key, std::string key, std::string text,
                              SharedText image) {
  TreeNode* const parent = find(parent_key);
  if (parent == nullptr) {
    throw base::RuntimeError(base::error::kParentNotFound, "Element not found: " + std::string(parent_key));
  }
  return add(parent, std::move(key), std::move(text), image);
}

std::vector<TreeNode*>& TreeView::siblings_below(TreeNode* parent) {
  return parent == nullptr ? roots_ : parent->children;
}

void TreeView::unlink_text(const TreeNode& node) {
  const auto [first, last] = by_text_.equal_range(std::string_view(node.text));
  const auto found = std::find(first, last, &node);
  if (found != last)
    by_text_.erase(found);
}

void TreeView::erase(TreeNode& node) {
  for (TreeNode* const child : node.children)
    erase(*child);
  if (selected_ == &node)
    selected_ = nullptr;
  if (!node.key.empty())
    by_key_.erase(&node);
  unlink_text(node);
  nodes_.erase(node.self);
}

void TreeView::remove(TreeNode& node) {
  TreeNode* const parent = node.parent;
  const std::size_t place = node.place;
  std::vector<TreeNode*>& siblings = siblings_below(parent);
  tell(TreeKind::kRemoving, parent, place);
  siblings.erase(siblings.begin() + static_cast<std::ptrdiff_t>(place));
  number_from(siblings, place);
  const bool was_selected = selected_ != nullptr;
  erase(node);
  tell(TreeKind::kRemoved, parent, place);
  if (was_selected && selected_ == nullptr)
    tell(TreeKind::kSelected);
}

void TreeView::clear() {
  tell(TreeKind::kResetting);
  selected_ = nullptr;
  by_key_.clear();
  by_text_.clear();
  roots_.clear();
  nodes_.clear();
  tell(TreeKind::kReset);
}

void TreeView::set_key(TreeNode& node, std::string key) {
  const TreeNode* const other = find(key);
  if (other != nullptr && other != &node)
    not_unique(key);
  if (!node.key.empty())
    by_key_.erase(&node);
  node.key = std::move(key);
  if (!node.key.empty())
    by_key_.insert(&node);
}

void TreeView::set_text(TreeNode& node, std::string text) {
  unlink_text(node);
  node.text = std::move(text);
  by_text_.insert(&node);
  tell(TreeKind::kChanged, &node, node.place);
}

void TreeView::set_marks(TreeNode& node, std::uint8_t marks) {
  if (node.marks == marks)
    return;
  node.marks = marks;
  tell(TreeKind::kChanged, &node, node.place);
}

TreeNode* TreeView::next(const TreeNode& node) {
  const auto after = std::next(node.self);
  return after == nodes_.end() ? nullptr : &*after;
}

TreeNode* TreeView::find(std::string_view key) const {
  const auto found = by_key_.find(key);
  return found == by_key_.end() ? nullptr : *found;
}

bool TreeView::has_key_with_prefix(std::string_view prefix) const {
  const auto found = by_key_.lower_bound(prefix);
  return found != by_key_.end() && base::starts_with_fold((*found)->key, prefix);
}

bool TreeView::has_text(std::string_view text) const {
  return by_text_.contains(text);
}

void TreeView::select(TreeNode* node) {
  if (selected_ == node)
    return;
  selected_ = node;
  tell(TreeKind::kSelected);
}

void TreeView::ensure_visible(TreeNode& node) {
  for (TreeNode* above = node.parent; above != nullptr; above = above->parent)
    set_expanded(*above, true);
  tell(TreeKind::kVisible, &node);
}

void TreeView::set_expanded(TreeNode& node, bool expanded) {
  if (node.expanded == expanded)
    return;
  node.expanded = expanded;
  tell(TreeKind::kExpanded, &node);
}

void TreeView::set_drawing(bool on) {
  if (on == drawing_)
    return;
  if (on) {
    drawing_ = true;
    tell(TreeKind::kReset);
  } else {
    tell(TreeKind::kResetting);
    drawing_ = false;
  }
}

void TreeView::tell(TreeKind kind, TreeNode* node, std::size_t place) const {
  if (drawing_)
    changes_.emit({kind, node, place});
}

}  // namespace twk::controls
