#pragma once

#include <set>
#include <string_view>
#include <unordered_set>

#include "base/text.hpp"

/// Sets of things that are found by one of their texts without regard to case. `TextOf` returns the text of a
/// thing, and of what is searched for; it must not change while the thing is in the set.
namespace twk::controls {

template <typename TextOf>
struct FoldedHash {
  using is_transparent = void;
  template <typename Thing>
  std::size_t operator()(const Thing& thing) const {
    return base::hash_fold(TextOf{}(thing));
  }
};

template <typename TextOf>
struct FoldedEqual {
  using is_transparent = void;
  template <typename One, typename Other>
  bool operator()(const One& one, const Other& other) const {
    return base::equals_fold(TextOf{}(one), TextOf{}(other));
  }
};

template <typename TextOf>
struct FoldedLess {
  using is_transparent = void;
  template <typename One, typename Other>
  bool operator()(const One& one, const Other& other) const {
    return base::compare_fold(TextOf{}(one), TextOf{}(other)) < 0;
  }
};

template <typename Thing, typename TextOf>
using FoldedSet = std::unordered_set<Thing, FoldedHash<TextOf>, FoldedEqual<TextOf>>;
template <typename Thing, typename TextOf>
using FoldedMultiset = std::unordered_multiset<Thing, FoldedHash<TextOf>, FoldedEqual<TextOf>>;
/// In the order of the upper-case texts.
template <typename Thing, typename TextOf>
using FoldedOrder = std::set<Thing, FoldedLess<TextOf>>;

}  // namespace twk::controls
