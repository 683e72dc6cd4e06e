// What code page 1252 holds, and which characters are invisible.
#include <algorithm>
#include <array>
#include <cstdio>
#include <utility>

#include "base/code_points.hpp"
#include "base/text.hpp"

namespace twk::base {
namespace {

/// Code points of the bytes 0x80 to 0x9F of code page 1252.
constexpr std::array<char32_t, 32> kAnsiHigh = {
    0x20AC, 0x81,   0x201A, 0x0192, 0x201E, 0x2026, 0x2020, 0x2021, 0x02C6, 0x2030, 0x0160,
    0x2039, 0x0152, 0x8D,   0x017D, 0x8F,   0x90,   0x2018, 0x2019, 0x201C, 0x201D, 0x2022,
    0x2013, 0x2014, 0x02DC, 0x2122, 0x0161, 0x203A, 0x0153, 0x9D,   0x017E, 0x0178};

std::optional<char> to_ansi_byte(char32_t code) {
  if (code < 0x80 || between(code, 0xA0, 0xFF))
    return static_cast<char>(static_cast<unsigned char>(code));
  const auto* const found = std::find(kAnsiHigh.begin(), kAnsiHigh.end(), code);
  if (found == kAnsiHigh.end())
    return std::nullopt;
  return static_cast<char>(static_cast<unsigned char>(0x80 + (found - kAnsiHigh.begin())));
}

bool is_control(char32_t code) {
  return code < 0x20 || between(code, 0x7F, 0x9F);
}

struct Range {
  char32_t first;
  char32_t last;
};

/// The general category "Cf" of Unicode, and the two separators of lines and paragraphs.
constexpr std::array<Range, 21> kFormatCharacters = {
    {{0xAD, 0xAD},       {0x600, 0x605},     {0x61C, 0x61C},     {0x6DD, 0x6DD},     {0x70F, 0x70F},
     {0x890, 0x891},     {0x8E2, 0x8E2},     {0x180E, 0x180E},   {0x200B, 0x200F},   {0x2028, 0x202E},
     {0x2060, 0x2064},   {0x2066, 0x206F},   {0xFEFF, 0xFEFF},   {0xFFF9, 0xFFFB},   {0x110BD, 0x110BD},
     {0x110CD, 0x110CD}, {0x13430, 0x1343F}, {0x1BCA0, 0x1BCA3}, {0x1D173, 0x1D17A}, {0xE0001, 0xE0001},
     {0xE0020, 0xE007F}}};

bool is_invisible(char32_t code) {
  return is_control(code) ||
         std::any_of(kFormatCharacters.begin(), kFormatCharacters.end(),
                     [code](const Range& range) { return between(code, range.first, range.last); });
}

std::optional<std::string> find_code(std::string_view text, bool (*matches)(char32_t)) {
  // Most texts are printable ASCII, of which nothing matches.
  if (std::all_of(text.begin(), text.end(), [](char c) { return c >= ' ' && c <= '~'; }))
    return std::nullopt;
  const std::u32string codes = to_utf32(text);
  const auto found = std::find_if(codes.begin(), codes.end(), matches);
  return found == codes.end() ? std::nullopt : std::optional(code_point_name(*found));
}

}  // namespace

std::optional<std::string> to_ansi(std::string_view text) {
  if (is_ascii(text))
    return std::string(text);
  std::string out;
  out.reserve(text.size());
  for (const char32_t code : to_utf32(text)) {
    const std::optional<char> byte = to_ansi_byte(code);
    if (!byte)
      return std::nullopt;
    out.push_back(*byte);
  }
  return out;
}

std::string to_ansi(std::string_view text, char substitute) {
  if (is_ascii(text))
    return std::string(text);
  std::string out;
  out.reserve(text.size());
  for (const char32_t code : to_utf32(text))
    out.push_back(to_ansi_byte(code).value_or(substitute));
  return out;
}

std::string from_ansi(std::string_view bytes) {
  if (is_ascii(bytes))
    return std::string(bytes);
  std::u32string codes;
  codes.reserve(bytes.size());
  for (const char c : bytes) {
    const auto byte = static_cast<unsigned char>(c);
    codes.push_back(between(byte, 0x80, 0x9F) ? kAnsiHigh.at(byte - 0x80U) : byte);
  }
  return to_utf8(codes);
}

std::optional<std::string> find_outside_ansi(std::string_view text) {
  if (is_ascii(text))
    return std::nullopt;
  for (const char32_t code : to_utf32(text)) {
    if (!to_ansi_byte(code))
      return to_utf8(std::u32string_view(&code, 1)) + " (" + code_point_name(code) + ")";
  }
  return std::nullopt;
}

std::string code_point_name(char32_t code) {
  std::array<char, 16> buffer{};
  const int size = std::snprintf(buffer.data(), buffer.size(), "U+%04X", static_cast<unsigned>(code));
  return {buffer.data(), static_cast<std::size_t>(size)};
}

std::optional<std::string> find_control_character(std::string_view text) {
  return find_code(text, is_control);
}

std::optional<std::string> find_invisible_character(std::string_view text) {
  return find_code(text, is_invisible);
}

}  // namespace twk::base
