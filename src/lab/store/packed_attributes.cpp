#include "lab/store/packed_attributes.hpp"

#include <array>

#include "base/text.hpp"

namespace twk::lab {
namespace {

constexpr std::size_t kLongestShared = 200;
constexpr std::uint32_t kTrialValues = 64;

char fold(char c) {
  return c >= 'A' && c <= 'Z' ? static_cast<char>(c + ('a' - 'A')) : c;
}

/// Appends both as varints, which take up to five bytes each.
void append_varints(std::string& out, std::uint32_t first, std::uint32_t second) {
  std::array<char, 10> bytes{};
  std::size_t size = 0;
  for (std::uint32_t number : {first, second}) {
    for (; number >= 128; number >>= 7U)
      bytes.at(size++) = static_cast<char>((number & 127U) | 128U);
    bytes.at(size++) = static_cast<char>(number);
  }
  out.append(bytes.data(), size);
}

}  // namespace

std::size_t AttributePool::FoldHash::operator()(std::string_view text) const {
  std::uint64_t hash = 0xCBF29CE484222325U;
  for (const char c : text)
    hash = (hash ^ static_cast<unsigned char>(fold(c))) * 0x100000001B3U;
  return hash;
}

bool AttributePool::FoldEqual::operator()(std::string_view a, std::string_view b) const {
  return is_same_attribute(a, b);
}

AttributeId AttributePool::intern(std::string_view name) {
  if (const std::optional<AttributeId> known = find(name))
    return *known;
  const auto id = static_cast<AttributeId>(names_.size());
  names_.push_back({std::string(name), name.find(';') != base::npos});
  ids_.emplace(names_.back().text, id);
  return id;
}

std::optional<AttributeId> AttributePool::find(std::string_view name) const {
  const auto found = ids_.find(name);
  return found == ids_.end() ? std::nullopt : std::optional(found->second);
}

/// An attribute whose values turn out to be mostly different is given up after some trials.
bool AttributePool::is_worth_sharing(Name& name, std::string_view value) const {
  if (value.size() < 3 || value.size() > kLongestShared)
    return false;
  return name.fresh < kTrialValues || name.fresh < name.seen / 4;
}

void AttributePool::append(std::string& block, AttributeId id, std::string_view value) {
  Name& name = names_[id];
  if (!is_worth_sharing(name, value)) {
    append_varints(block, id * 2, static_cast<std::uint32_t>(value.size()));
    block += value;
    return;
  }
  ++name.seen;
  auto found = value_ids_.find(value);
  if (found == value_ids_.end()) {
    ++name.fresh;
    values_.emplace_back(value);
    found = value_ids_.emplace(values_.back(), static_cast<std::uint32_t>(values_.size() - 1)).first;
  }
  append_varints(block, id * 2 + 1, found->second);
}

}  // namespace twk::lab
