#include "controls/tree_view.hpp"

#include <algorithm>

#include "base/errors.hpp"
#include "base/text.hpp"

namespace twk::controls {
namespace {

[[noreturn]] void not_unique(const std::string& key) {
  throw base::RuntimeError(base::error::kKeyNotUnique, "Key is not unique in collection: " + key);
}

}  // namespace

TreeNode& TreeView::add(TreeNode* parent, std::string key, std::string text, std::string image) {
  const std::string folded = base::upper(key);
  if (!folded.empty() && by_key_.contains(folded))
    not_unique(key);
  nodes_.emplace_back();
  TreeNode& node = nodes_.back();
  node.key = std::move(key);
  node.text = std::move(text);
  node.image = std::move(image);
  node.parent = parent;
  node.self = std::prev(nodes_.end());
  if (!folded.empty())
    by_key_.emplace(folded, &node);
  ++text_count_[base::upper(node.text)];
  if (parent == nullptr) {
    roots_.push_back(&node);
  } else {
    insert_child(*parent, node);
  }
  tell();
  return node;
}

TreeNode& TreeView::add_under(std::string_view parent_key, std::string key, std::string text,
                              std::string image) {
  TreeNode* const parent = find(parent_key);
  if (parent == nullptr) {
    throw base::RuntimeError(base::error::kParentNotFound, "Element not found: " + std::string(parent_key));
  }
  return add(parent, std::move(key), std::move(text), std::move(image));
}

void TreeView::insert_child(TreeNode& parent, TreeNode& child) {
  auto place = parent.children.end();
  if (parent.sorted) {
    place = std::upper_bound(
        parent.children.begin(), parent.children.end(), &child,
        [](const TreeNode* a, const TreeNode* b) { return base::upper(a->text) < base::upper(b->text); });
  }
  parent.children.insert(place, &child);
}

void TreeView::erase(TreeNode& node) {
  for (TreeNode* const child : node.children)
    erase(*child);
  if (selected_ == &node)
    selected_ = nullptr;
  if (!node.key.empty())
    by_key_.erase(base::upper(node.key));
  const auto count = text_count_.find(base::upper(node.text));
  if (--count->second == 0)
    text_count_.erase(count);
  nodes_.erase(node.self);
}

void TreeView::remove(TreeNode& node) {
  std::erase(node.parent == nullptr ? roots_ : node.parent->children, &node);
  erase(node);
  tell();
}

void TreeView::clear() {
  selected_ = nullptr;
  by_key_.clear();
  text_count_.clear();
  roots_.clear();
  nodes_.clear();
  tell();
}

void TreeView::set_key(TreeNode& node, std::string key) {
  const std::string folded = base::upper(key);
  const auto found = by_key_.find(folded);
  if (found != by_key_.end() && found->second != &node)
    not_unique(key);
  if (!node.key.empty())
    by_key_.erase(base::upper(node.key));
  node.key = std::move(key);
  if (!folded.empty())
    by_key_.emplace(folded, &node);
  tell();
}

TreeNode* TreeView::next(const TreeNode& node) {
  const auto after = std::next(node.self);
  return after == nodes_.end() ? nullptr : &*after;
}

TreeNode* TreeView::find(std::string_view key) const {
  const auto found = by_key_.find(base::upper(key));
  return found == by_key_.end() ? nullptr : found->second;
}

bool TreeView::has_key_with_prefix(std::string_view prefix) const {
  const std::string folded = base::upper(prefix);
  const auto found = by_key_.lower_bound(folded);
  return found != by_key_.end() && found->first.starts_with(folded);
}

bool TreeView::has_text(std::string_view text) const {
  return text_count_.contains(base::upper(text));
}

void TreeView::select(TreeNode* node) {
  selected_ = node;
  tell();
}

void TreeView::ensure_visible(TreeNode& node) {
  for (TreeNode* above = node.parent; above != nullptr; above = above->parent)
    above->expanded = true;
  tell();
}

void TreeView::set_drawing(bool on) {
  const bool turned_on = on && !drawing_;
  drawing_ = on;
  if (turned_on)
    changed_.emit();
}

void TreeView::tell() {
  if (drawing_)
    changed_.emit();
}

}  // namespace twk::controls
