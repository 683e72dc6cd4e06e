#include "session/name_prefixes.hpp"

#include <algorithm>
#include <utility>

namespace twk::session {
namespace {

constexpr std::size_t kLongestName = 255;
constexpr std::size_t kLargestBlock = 384;

char byte_of(std::size_t size) {
  return static_cast<char>(static_cast<unsigned char>(size));
}

struct NameEntry {
  std::size_t shared = 0;  ///< bytes that it has in common with the name before it
  std::string_view rest;
  [[nodiscard]] std::size_t name_size() const { return shared + rest.size(); }
  [[nodiscard]] std::size_t size() const { return 2 + rest.size(); }
};

NameEntry entry_at(std::string_view block, std::size_t at) {
  return {static_cast<unsigned char>(block[at]),
          block.substr(at + 2, static_cast<unsigned char>(block[at + 1]))};
}

std::string entry_of(std::size_t shared, std::string_view rest) {
  return std::string{byte_of(shared), byte_of(rest.size())}.append(rest);
}

std::size_t common_bytes(std::string_view one, std::string_view other) {
  return static_cast<std::size_t>(std::ranges::mismatch(one, other).in1 - one.begin());
}

/// Where a name is in a block, or would be.
struct NamePlace {
  std::size_t at = 0;             ///< of the first entry that is not before it; the end for none
  std::size_t shared_before = 0;  ///< bytes in common with the entry before that
  std::size_t shared = 0;         ///< with that entry
};

/// An entry that shares more with the one before it than the name does is on the same side of the name, one
/// that shares less is behind it: most entries need no look at their bytes.
NamePlace place_of(std::string_view block, std::string_view name) {
  NamePlace place;
  const char* const bytes = block.data();
  while (place.at < block.size()) {
    if (static_cast<unsigned char>(bytes[place.at]) > place.shared_before) {
      place.at += 2U + static_cast<unsigned char>(bytes[place.at + 1]);
      continue;
    }
    const NameEntry entry = entry_at(block, place.at);
    if (entry.shared < place.shared_before) {
      place.shared = entry.shared;
      return place;
    }
    const std::string_view rest = name.substr(place.shared_before);
    const std::size_t common = common_bytes(rest, entry.rest);
    place.shared = place.shared_before + common;
    if (entry.rest.substr(common) >= rest.substr(common))
      return place;
    place.shared_before = place.shared;
    place.at += entry.size();
  }
  place.shared = 0;
  return place;
}

}  // namespace

NamePrefixes::Blocks::const_iterator NamePrefixes::block_of(std::string_view name) const {
  const auto after = blocks_.upper_bound(name);
  return after == blocks_.begin() ? blocks_.end() : std::prev(after);
}

std::optional<NamePrefixes::Next> NamePrefixes::not_before(std::string_view name) const {
  auto block = block_of(name);
  if (block == blocks_.end())
    return std::nullopt;
  const NamePlace place = place_of(block->second, name);
  if (place.at < block->second.size())
    return Next{place.shared, entry_at(block->second, place.at).name_size()};
  if (++block == blocks_.end())
    return std::nullopt;
  const NameEntry first = entry_at(block->second, 0);
  return Next{common_bytes(name, first.rest), first.name_size()};
}

bool NamePrefixes::has_beginning(std::string_view prefix) const {
  const auto next = not_before(prefix);
  return next && next->shared == prefix.size();
}

bool NamePrefixes::has(std::string_view name) const {
  const auto next = not_before(name);
  return !name.empty() && next && next->shared == name.size() && next->size == name.size();
}

void NamePrefixes::add(std::string_view name) {
  name = name.substr(0, kLongestName);
  if (blocks_.empty())
    blocks_.emplace();
  const auto block = std::prev(blocks_.upper_bound(name));
  std::string& names = block->second;
  const NamePlace place = place_of(names, name);
  std::string entry = entry_of(place.shared_before, name.substr(place.shared_before));
  if (place.at == names.size()) {
    names += entry;
  } else {
    const NameEntry next = entry_at(names, place.at);
    if (place.shared == name.size() && next.name_size() == name.size())
      return;
    entry += entry_of(place.shared, next.rest.substr(place.shared - next.shared));
    names.replace(place.at, next.size(), entry);
  }
  if (names.size() > kLargestBlock)
    split(block);
}

void NamePrefixes::split(Blocks::iterator block) {
  std::string& names = block->second;
  std::string first;
  std::size_t at = 0;
  for (std::size_t next = 0; next <= names.size() / 2;) {
    const NameEntry entry = entry_at(names, next);
    first.resize(entry.shared);
    first += entry.rest;
    at = std::exchange(next, next + entry.size());
  }
  std::string second = entry_of(0, first) + names.substr(at + entry_at(names, at).size());
  names.resize(at);
  names.shrink_to_fit();
  blocks_.emplace_hint(std::next(block), first, std::move(second));
}

}  // namespace twk::session
