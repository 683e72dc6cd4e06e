#include "session/name_prefixes.hpp"

#include <algorithm>

namespace twk::session {
namespace {

constexpr std::size_t kLongestName = 255;
constexpr std::size_t kLargestBlock = 1024;

std::string_view name_at(std::string_view block, std::size_t at) {
  return block.substr(at + 1, static_cast<unsigned char>(block[at]));
}

/// Where the first name that is not before this one begins; the end of the block for none.
std::size_t place_of(std::string_view block, std::string_view name) {
  std::size_t at = 0;
  while (at < block.size() && name_at(block, at) < name)
    at += 1 + name_at(block, at).size();
  return at;
}

}  // namespace

NamePrefixes::Blocks::const_iterator NamePrefixes::block_of(std::string_view name) const {
  const auto after = blocks_.upper_bound(name);
  return after == blocks_.begin() ? blocks_.end() : std::prev(after);
}

std::string_view NamePrefixes::not_before(std::string_view name) const {
  auto block = block_of(name);
  if (block == blocks_.end())
    return {};
  const std::size_t at = place_of(block->second, name);
  if (at < block->second.size())
    return name_at(block->second, at);
  return ++block == blocks_.end() ? std::string_view() : name_at(block->second, 0);
}

bool NamePrefixes::has_beginning(std::string_view prefix) const {
  return not_before(prefix).starts_with(prefix) && !blocks_.empty();
}

bool NamePrefixes::has(std::string_view name) const {
  return !name.empty() && not_before(name) == name;
}

void NamePrefixes::add(std::string_view name) {
  name = name.substr(0, kLongestName);
  if (blocks_.empty())
    blocks_.emplace();
  const auto block = std::prev(blocks_.upper_bound(name));
  std::string& names = block->second;
  const std::size_t at = place_of(names, name);
  if (at < names.size() && name_at(names, at) == name)
    return;
  std::string entry(1, static_cast<char>(static_cast<unsigned char>(name.size())));
  names.insert(at, entry.append(name));
  if (names.size() > kLargestBlock)
    split(block);
}

void NamePrefixes::split(Blocks::iterator block) {
  std::string& names = block->second;
  std::size_t at = 0;
  while (at < names.size() / 2)
    at += 1 + name_at(names, at).size();
  std::string second = names.substr(at);
  names.resize(at);
  names.shrink_to_fit();
  const std::string first(name_at(second, 0));
  blocks_.emplace_hint(std::next(block), first, std::move(second));
}

}  // namespace twk::session
