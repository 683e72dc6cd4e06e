#pragma once

#include <cstddef>
#include <cstdint>
#include <list>
#include <string>
#include <string_view>
#include <vector>

#include "controls/folded_index.hpp"
#include "controls/observable.hpp"
#include "controls/shared_text.hpp"

namespace twk::controls {

struct TreeNode {
  std::string key;  ///< unique in the tree without regard to case, or empty
  std::string text;
  SharedText image;
  TreeNode* parent = nullptr;
  std::vector<TreeNode*> children;
  bool sorted = false;  ///< children are in order of their texts, otherwise in the order they were added
  bool expanded = false;
  std::uint8_t marks = 0;   ///< bits for what the view shows beside the text, by the owner's meaning
  std::uint32_t place = 0;  ///< among the nodes of one parent; kept by the tree

 private:
  friend class TreeView;
  std::list<TreeNode>::iterator self;
};

/// What happens to the nodes of a tree. Insertions, removals and resets are announced before and reported
/// after.
struct TreeChange {
  enum class Kind {
    kInserting,  ///< at `place` below `node`, which is none for a root
    kInserted,
    kRemoving,  ///< what is at `place` below `node`, with all below it
    kRemoved,
    kResetting,  ///< until kReset the nodes may be any
    kReset,
    kSelected,  ///< another node is selected than before
    kExpanded,  ///< `node` was opened or closed
    kVisible,   ///< the view should scroll to `node`
    kChanged,   ///< the text or the marks of `node`
  };
  Kind kind;
  TreeNode* node = nullptr;
  std::size_t place = 0;
};

/// Nodes below roots. The tree is also one sequence of nodes in the order they were added. Look-ups by key,
/// by the beginning of a key and by text cost no walk. Node addresses stay valid until the node is removed.
class TreeView {
 public:
  TreeView() = default;
  TreeView(const TreeView&) = delete;
  TreeView& operator=(const TreeView&) = delete;

  /// A node under `parent`, or a root when there is none. Raises kKeyNotUnique.
  TreeNode& add(TreeNode* parent, std::string key, std::string text, SharedText image);
  /// The same under the node of that key. Raises kParentNotFound when there is none.
  TreeNode& add_under(std::string_view parent_key, std::string key, std::string text, SharedText image);
  /// With all below it. A selected node in it leaves nothing selected.
  void remove(TreeNode& node);
  void clear();
  /// Raises kKeyNotUnique.
  void set_key(TreeNode& node, std::string key);
  /// The node stays in its place, even among sorted neighbours.
  void set_text(TreeNode& node, std::string text);
  void set_marks(TreeNode& node, std::uint8_t marks);

  [[nodiscard]] std::size_t size() const { return nodes_.size(); }
  [[nodiscard]] const std::vector<TreeNode*>& roots() const { return roots_; }
  [[nodiscard]] TreeNode* first() { return nodes_.empty() ? nullptr : &nodes_.front(); }
  /// The node added after this one that is still there; none after the last.
  [[nodiscard]] TreeNode* next(const TreeNode& node);
  [[nodiscard]] TreeNode* find(std::string_view key) const;
  /// True when some node's key begins with `prefix`, case ignored.
  [[nodiscard]] bool has_key_with_prefix(std::string_view prefix) const;
  /// True when some node's text equals `text`, case ignored.
  [[nodiscard]] bool has_text(std::string_view text) const;

  [[nodiscard]] TreeNode* selected() const { return selected_; }
  void select(TreeNode* node);
  /// Opens all above the node, so that it can be seen.
  void ensure_visible(TreeNode& node);

  void set_expanded(TreeNode& node, bool expanded);

  [[nodiscard]] Watch watch(Channel<const TreeChange&>::Callback callback) const {
    return changes_.watch(std::move(callback));
  }

 private:
  template <typename View>
  friend class DrawingOff;

  /// Indexes nodes by their own texts, without a copy.
  struct KeyOf {
    std::string_view operator()(const TreeNode* node) const { return node->key; }
    std::string_view operator()(std::string_view key) const { return key; }
  };
  struct TextOf {
    std::string_view operator()(const TreeNode* node) const { return node->text; }
    std::string_view operator()(std::string_view text) const { return text; }
  };

  void unlink_text(const TreeNode& node);
  [[nodiscard]] std::vector<TreeNode*>& siblings_below(TreeNode* parent);
  void erase(TreeNode& node);
  /// Turning drawing off announces that all nodes may change; until it is on again nothing is reported.
  void set_drawing(bool on);
  void tell(TreeChange::Kind kind, TreeNode* node = nullptr, std::size_t place = 0) const;

  std::list<TreeNode> nodes_;
  std::vector<TreeNode*> roots_;
  FoldedOrder<TreeNode*, KeyOf> by_key_;
  FoldedMultiset<TreeNode*, TextOf> by_text_;
  TreeNode* selected_ = nullptr;
  Channel<const TreeChange&> changes_;
  bool drawing_ = true;
};

}  // namespace twk::controls
