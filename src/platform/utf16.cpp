#include "platform/utf16.hpp"

#include <algorithm>

#include "base/text.hpp"
#include "platform/little_endian.hpp"

namespace twk::platform {

base::Bytes to_utf16(std::string_view text) {
  constexpr char32_t kFirstBeyond = 0x10000;
  base::Bytes bytes;
  for (const char32_t code : base::to_utf32(text)) {
    if (code < kFirstBeyond) {
      append_u16(bytes, static_cast<std::uint16_t>(code));
    } else {
      append_u16(bytes, static_cast<std::uint16_t>(0xD800U + ((code - kFirstBeyond) >> 10U)));
      append_u16(bytes, static_cast<std::uint16_t>(0xDC00U + (code & 0x3FFU)));
    }
  }
  return bytes;
}

std::size_t utf16_length(std::string_view text) {
  // Of well-formed UTF-8, such a character alone has a first byte from 0xF0 on.
  const auto twice = [](char c) { return static_cast<unsigned char>(c) >= 0xF0; };
  return base::length(text) + static_cast<std::size_t>(std::count_if(text.begin(), text.end(), twice));
}

std::optional<std::string> from_utf16(std::span<const std::uint8_t> bytes) {
  if (bytes.size() % 2 != 0)
    return std::nullopt;
  std::u32string codes;
  for (std::size_t at = 0; at < bytes.size(); at += 2) {
    const std::uint16_t unit = read_u16(bytes, at);
    if (unit < 0xD800 || unit > 0xDFFF) {
      codes.push_back(unit);
      continue;
    }
    at += 2;
    const std::uint16_t low = at < bytes.size() ? read_u16(bytes, at) : std::uint16_t{0};
    if (unit > 0xDBFF || low < 0xDC00 || low > 0xDFFF)
      return std::nullopt;
    codes.push_back(0x10000U + ((unit & 0x3FFU) << 10U) + (low & 0x3FFU));
  }
  return base::to_utf8(codes);
}

}  // namespace twk::platform
