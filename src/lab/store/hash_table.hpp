#pragma once

#include <cstddef>
#include <cstdint>
#include <vector>

namespace twk::lab {

/// What an item in a `HashTable` carries for it. An item in no table has an empty `back`.
template <typename Item>
struct HashHook {
  Item* next = nullptr;
  Item** back = nullptr;  ///< the pointer that points at the item
  std::uint64_t hash = 0;
};

/// A hash table that owns nothing and allocates nothing per item: its chains run through the items. It
/// may hold items with equal keys, and both insert and erase take constant time however many there are.
template <typename Item, HashHook<Item> Item::*hook>
class HashTable {
 public:
  HashTable() : buckets_(16) {}

  void insert(Item& item, std::uint64_t hash) {
    if (size_ >= buckets_.size())
      grow();
    (item.*hook).hash = hash;
    link(item);
    ++size_;
  }

  /// An item that is in no table is ignored.
  void erase(Item& item) {
    HashHook<Item>& hooks = item.*hook;
    if (hooks.back == nullptr)
      return;
    *hooks.back = hooks.next;
    if (hooks.next != nullptr)
      (hooks.next->*hook).back = hooks.back;
    hooks = {};
    --size_;
  }

  /// Calls `visit` for the items of that hash until it returns true; returns that item, or null. `visit` may
  /// erase its item.
  template <typename Visit>
  Item* find(std::uint64_t hash, Visit visit) const {
    for (Item* item = buckets_[index(hash)]; item != nullptr;) {
      Item* const next = (item->*hook).next;
      if ((item->*hook).hash == hash && visit(*item))
        return item;
      item = next;
    }
    return nullptr;
  }

  /// Has the memory of a later `find` fetched: first the place of the hash, then, by `first`, the first item
  /// there.
  void fetch(std::uint64_t hash) const { __builtin_prefetch(&buckets_[index(hash)]); }
  [[nodiscard]] const Item* first(std::uint64_t hash) const { return buckets_[index(hash)]; }

  [[nodiscard]] bool empty() const { return size_ == 0; }

 private:
  [[nodiscard]] std::size_t index(std::uint64_t hash) const {
    return (hash ^ hash >> 32U) & (buckets_.size() - 1);
  }

  void link(Item& item) {
    HashHook<Item>& hooks = item.*hook;
    Item*& head = buckets_[index(hooks.hash)];
    hooks.next = head;
    hooks.back = &head;
    if (head != nullptr)
      (head->*hook).back = &hooks.next;
    head = &item;
  }

  void grow() {
    std::vector<Item*> old(buckets_.size() * 2);
    old.swap(buckets_);
    for (Item* item : old) {
      while (item != nullptr) {
        Item* const next = (item->*hook).next;
        link(*item);
        item = next;
      }
    }
  }

  std::vector<Item*> buckets_;  ///< as many as a power of two
  std::size_t size_ = 0;
};

}  // namespace twk::lab
