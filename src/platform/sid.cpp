#include "platform/sid.hpp"

#include <charconv>

#include "base/text.hpp"

namespace twk::platform {
namespace {

constexpr std::uint8_t kSidRevision = 1;
constexpr std::size_t kSidHeaderSize = 8;
constexpr std::size_t kMostSubAuthorities = 15;

/// The number `text` begins with, decimal or "0x…", and removes it from the front.
std::optional<std::uint64_t> take_number(std::string_view& text, std::uint64_t largest) {
  int base = 10;
  if (base::starts_with_fold(text, "0x")) {
    base = 16;
    text.remove_prefix(2);
  }
  std::uint64_t number = 0;
  const auto [end, failure] = std::from_chars(text.data(), text.data() + text.size(), number, base);
  if (failure != std::errc{} || number > largest)
    return std::nullopt;
  text.remove_prefix(static_cast<std::size_t>(end - text.data()));
  return number;
}

void append_word(base::Bytes& bytes, std::uint32_t word) {
  for (unsigned shift = 0; shift < 32; shift += 8)
    bytes.push_back(static_cast<std::uint8_t>(word >> shift));
}

base::Bytes header(std::uint64_t authority) {
  base::Bytes bytes{kSidRevision, 0};
  for (unsigned shift = 48; shift > 0; shift -= 8)
    bytes.push_back(static_cast<std::uint8_t>(authority >> (shift - 8)));
  return bytes;
}

void append_sub_authority(base::Bytes& bytes, std::uint32_t word) {
  if (bytes[1] == kMostSubAuthorities)
    return;
  ++bytes[1];
  append_word(bytes, word);
}

}  // namespace

Sid::Sid(std::uint64_t authority, std::initializer_list<std::uint32_t> sub_authorities)
    : bytes_(header(authority)) {
  for (const std::uint32_t word : sub_authorities)
    append_sub_authority(bytes_, word);
}

std::optional<Sid> Sid::decode(std::span<const std::uint8_t> bytes) {
  if (bytes.size() < kSidHeaderSize || bytes[0] != kSidRevision || bytes[1] > kMostSubAuthorities)
    return std::nullopt;
  const std::size_t size = kSidHeaderSize + bytes[1] * std::size_t{4};
  if (bytes.size() < size)
    return std::nullopt;
  return Sid(base::Bytes(bytes.begin(), bytes.begin() + static_cast<std::ptrdiff_t>(size)));
}

std::optional<Sid> Sid::parse(std::string_view text) {
  constexpr std::uint64_t kLargestAuthority = 0xFFFFFFFFFFFF;
  constexpr std::uint64_t kLargestSubAuthority = 0xFFFFFFFF;
  if (!base::starts_with_fold(text, "S-1-"))
    return std::nullopt;
  text.remove_prefix(4);
  const auto authority = take_number(text, kLargestAuthority);
  if (!authority)
    return std::nullopt;
  base::Bytes bytes = header(*authority);
  while (!text.empty()) {
    if (!text.starts_with('-') || bytes[1] == kMostSubAuthorities)
      return std::nullopt;
    text.remove_prefix(1);
    const auto word = take_number(text, kLargestSubAuthority);
    if (!word)
      return std::nullopt;
    append_sub_authority(bytes, static_cast<std::uint32_t>(*word));
  }
  return Sid(std::move(bytes));
}

std::string Sid::text() const {
  std::uint64_t authority = 0;
  for (std::size_t i = 2; i < kSidHeaderSize; ++i)
    authority = authority << 8U | bytes_[i];
  std::string text = "S-1-";
  if (authority >> 32U == 0) {
    text += base::to_text(static_cast<std::int64_t>(authority));
  } else {
    text += "0x";
    for (std::size_t i = 2; i < kSidHeaderSize; ++i)
      text += base::hex_byte(bytes_[i]);
  }
  for (std::size_t at = kSidHeaderSize; at < bytes_.size(); at += 4) {
    std::uint32_t word = 0;
    for (std::size_t i = 4; i > 0; --i)
      word = word << 8U | bytes_[at + i - 1];
    text += "-" + base::to_text(word);
  }
  return text;
}

namespace well_known {
namespace {
constexpr std::uint64_t kWorldAuthority = 1;
constexpr std::uint64_t kCreatorAuthority = 3;
constexpr std::uint64_t kNtAuthority = 5;
constexpr std::uint32_t kBuiltinDomain = 32;
}  // namespace

Sid everyone() {
  return {kWorldAuthority, {0}};
}
Sid creator_owner() {
  return {kCreatorAuthority, {0}};
}
Sid creator_group() {
  return {kCreatorAuthority, {1}};
}
Sid owner_rights() {
  return {kCreatorAuthority, {4}};
}
Sid principal_self() {
  return {kNtAuthority, {10}};
}
Sid authenticated_users() {
  return {kNtAuthority, {11}};
}
Sid local_system() {
  return {kNtAuthority, {18}};
}
Sid administrators() {
  return {kNtAuthority, {kBuiltinDomain, 544}};
}
Sid users() {
  return {kNtAuthority, {kBuiltinDomain, 545}};
}

}  // namespace well_known

}  // namespace twk::platform
