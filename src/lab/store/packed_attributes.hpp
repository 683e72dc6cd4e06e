#pragma once

#include <cstdint>
#include <deque>
#include <optional>
#include <string>
#include <string_view>
#include <unordered_map>
#include <vector>

#include "lab/store/ldif.hpp"

namespace twk::lab {

using AttributeId = std::uint32_t;

/// The names of attributes and the values that many entries share, each stored once. An entry's attributes
/// are one block of bytes:
///
///     block    value*
///     value    varint(name id * 2)      varint(size)  byte*     a value of its own
///            | varint(name id * 2 + 1)  varint(value id)        a shared value
///     varint   seven bits a byte, the low ones first, the top bit set in all but the last
///
/// The values of an attribute are stored together, in the order they were added.
class AttributePool {
 public:
  AttributePool() = default;
  AttributePool(const AttributePool&) = delete;
  AttributePool& operator=(const AttributePool&) = delete;

  /// Names fold case; the first spelling is kept.
  AttributeId intern(std::string_view name);
  [[nodiscard]] std::optional<AttributeId> find(std::string_view name) const;
  [[nodiscard]] std::string_view name(AttributeId id) const { return names_[id].text; }

  /// True for a name with options: "member;range=0-1499".
  [[nodiscard]] bool has_options(AttributeId id) const { return names_[id].has_options; }

  void append(std::string& block, AttributeId name, std::string_view value);

  /// Calls `visit(id, value)` for each value until it returns false.
  template <typename Visit>
  void each(std::string_view block, Visit visit) const {
    while (!block.empty()) {
      const std::uint32_t tag = take_varint(block);
      const std::uint32_t number = take_varint(block);
      const bool shared = (tag & 1U) != 0;
      const std::string_view value = shared ? std::string_view(values_[number]) : block.substr(0, number);
      if (!shared)
        block.remove_prefix(number);
      if (!visit(tag >> 1U, value))
        return;
    }
  }

 private:
  struct Name {
    std::string text;
    bool has_options = false;
    std::uint32_t seen = 0;   ///< values that were looked for among the shared ones
    std::uint32_t fresh = 0;  ///< of those, how many were not there
  };
  struct FoldHash {
    using is_transparent = void;
    std::size_t operator()(std::string_view text) const;
  };
  struct FoldEqual {
    using is_transparent = void;
    bool operator()(std::string_view a, std::string_view b) const;
  };

  static std::uint32_t take_varint(std::string_view& block) {
    std::uint32_t number = 0;
    for (unsigned shift = 0;; shift += 7) {
      const auto byte = static_cast<unsigned char>(block.front());
      block.remove_prefix(1);
      number |= (byte & 127U) << shift;
      if (byte < 128)
        return number;
    }
  }
  [[nodiscard]] bool is_worth_sharing(Name& name, std::string_view value) const;

  std::deque<Name> names_;
  std::unordered_map<std::string_view, AttributeId, FoldHash, FoldEqual> ids_;
  std::deque<std::string> values_;
  std::unordered_map<std::string_view, std::uint32_t> value_ids_;
};

}  // namespace twk::lab
