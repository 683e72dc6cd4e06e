#pragma once

#include <functional>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace twk::lab {

struct Node;

/// One stored entry. A reference stays valid until the store is written or refreshed.
class Entry {
 public:
  explicit Entry(const Node& node) : node_(&node) {}
  Entry(const Entry&) = delete;
  Entry& operator=(const Entry&) = delete;

  [[nodiscard]] const std::string& dn() const;
  /// The values, raw bytes, in the order they were added; none when the attribute is absent. Names fold case.
  /// "member" and "memberOf" are links: they follow renames and disappear with the entry they name; a value
  /// from a file that names no stored entry is kept as text. "distinguishedName" is always the entry's own
  /// name.
  [[nodiscard]] std::vector<std::string> values(std::string_view attribute) const;
  /// The first value; empty when absent.
  [[nodiscard]] std::optional<std::string> value(std::string_view attribute) const;
  [[nodiscard]] bool has(std::string_view attribute) const;
  [[nodiscard]] std::vector<std::string> attribute_names() const;
  /// The values without copies, valid as long as the entry; read by `matches` of filter.hpp.
  [[nodiscard]] std::vector<std::string_view> views(std::string_view attribute) const;
  /// True when one of the values has what is asked for; not asked of those behind it. Allocates nothing.
  [[nodiscard]] bool any(std::string_view attribute,
                         const std::function<bool(std::string_view value)>& has_it) const;

 private:
  friend class EntryStore;
  const Node* node_;
};

}  // namespace twk::lab
