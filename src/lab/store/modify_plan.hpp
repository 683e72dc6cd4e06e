#pragma once

#include <array>
#include <cstdint>
#include <map>
#include <string>
#include <string_view>
#include <unordered_map>
#include <unordered_set>
#include <vector>

#include "lab/store/entry_tree.hpp"

namespace twk::lab {

/// Raises a directory error: what is wrong, and on what.
[[noreturn]] void refuse(std::uint32_t number, const std::string& what, std::string_view on);
/// The form in which values of an attribute are the same: text folds case, bytes do not.
std::string value_key(std::string_view value);
/// Null for a name that nothing has, and for text that is not a name.
Node* find_if_name(const EntryTree& tree, std::string_view text);

/// Follows the modifications of one entry's memberships, so that each is checked against the ones before it.
class LinkPlan {
 public:
  LinkPlan(const EntryTree& tree, Node& node, Origin origin) : tree_(tree), node_(node), origin_(origin) {}

  void modify(Side side, const Modification& change);
  /// For a new entry from a file: applying it skips what is already there.
  void add_unchecked(Side side, const std::vector<std::string>& values);
  /// The steps that make the modifications.
  std::vector<LinkStep> take() { return std::move(steps_); }

 private:
  struct View {
    bool cleared = false;
    std::unordered_map<std::string, bool> touched;  ///< by normalized name: true when it is there now
    std::size_t added = 0;
  };

  static std::string key_of(std::string_view text);
  [[nodiscard]] bool is_there(Side side, const std::string& key, const Node* end,
                              std::string_view text) const;
  [[nodiscard]] bool has_any(Side side) const;
  /// `kept` holds the names without an entry that are accepted.
  void add(Side side, const std::string& text, const std::unordered_set<std::string>& kept);
  void remove(Side side, const std::string& text);
  void clear(Side side);
  void replace(Side side, const std::vector<std::string>& values);

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

  void modify(const Modification& change);
  /// The values after the modifications so far.
  std::vector<std::string>& staged(std::string_view attribute);
  /// The entry's attributes afterwards.
  std::string take();

 private:
  void append(std::string& block, AttributeId id, const std::vector<std::string>& values);
  void add(std::vector<std::string>& values, const Modification& change) const;
  void remove(std::vector<std::string>& values, const Modification& change) const;

  EntryTree& tree_;
  const Node& node_;
  Origin origin_;
  std::map<AttributeId, std::vector<std::string>> staged_;
};

}  // namespace twk::lab
