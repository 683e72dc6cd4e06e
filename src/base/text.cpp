#include "base/text.hpp"

#include <algorithm>
#include <array>
#include <charconv>
#include <cstdio>
#include <cstring>
#include <limits>

#include "base/code_points.hpp"

namespace twk::base {
namespace {

constexpr char32_t kReplacement = 0xFFFD;

struct Decoded {
  char32_t code;
  std::size_t size;
  bool valid;
};

bool is_continuation(char c) {
  return (static_cast<unsigned char>(c) & 0xC0U) == 0x80U;
}

/// The character at `at`. One byte, not valid, when the bytes there are not well-formed.
Decoded decode_at(std::string_view text, std::size_t at) {
  const auto lead = static_cast<unsigned char>(text[at]);
  if (lead < 0x80)
    return {lead, 1, true};
  const std::size_t size = lead >= 0xF0 ? 4 : lead >= 0xE0 ? 3 : 2;
  if (lead < 0xC2 || lead > 0xF4 || at + size > text.size())
    return {lead, 1, false};
  char32_t code = lead & (0xFFU >> (size + 1));
  for (std::size_t i = 1; i < size; ++i) {
    if (!is_continuation(text[at + i]))
      return {lead, 1, false};
    code = (code << 6U) | (static_cast<unsigned char>(text[at + i]) & 0x3FU);
  }
  const bool overlong = (size == 3 && code < 0x800) || (size == 4 && code < 0x10000);
  const bool surrogate = code >= 0xD800 && code <= 0xDFFF;
  if (overlong || surrogate || code > 0x10FFFF)
    return {lead, 1, false};
  return {code, size, true};
}

void append_utf8(std::string& out, char32_t code) {
  const auto byte = [&](char32_t value) {
    out.push_back(static_cast<char>(static_cast<unsigned char>(value)));
  };
  if (code < 0x80) {
    byte(code);
  } else if (code < 0x800) {
    byte(0xC0U | (code >> 6U));
    byte(0x80U | (code & 0x3FU));
  } else if (code < 0x10000) {
    byte(0xE0U | (code >> 12U));
    byte(0x80U | ((code >> 6U) & 0x3FU));
    byte(0x80U | (code & 0x3FU));
  } else {
    byte(0xF0U | (code >> 18U));
    byte(0x80U | ((code >> 12U) & 0x3FU));
    byte(0x80U | ((code >> 6U) & 0x3FU));
    byte(0x80U | (code & 0x3FU));
  }
}

/// Letters of both cases. In a block of pairs each lower-case letter follows its capital, which is even or
/// odd; in the others all letters are of one case and as far from the other one.
struct CaseBlock {
  enum class Kind : std::uint8_t { kEvenPairs, kOddPairs, kCapitals, kSmall };

  char32_t first;
  char32_t last;
  Kind kind;
  std::int32_t to_other = 0;
};

constexpr auto kEvenPairs = CaseBlock::Kind::kEvenPairs;
constexpr auto kOddPairs = CaseBlock::Kind::kOddPairs;
constexpr auto kCapitals = CaseBlock::Kind::kCapitals;
constexpr auto kSmall = CaseBlock::Kind::kSmall;

/// Simple mappings of Unicode between letters of as many bytes: Latin, Greek, Cyrillic, Armenian and Coptic,
/// numerals, full-width letters. Small letters without a capital to themselves (µ, ς, ǅ) lead to that of
/// another. Sorted.
constexpr CaseBlock kCaseBlocks[] = {
    {0xB5, 0xB5, kSmall, 743},       {0xC0, 0xD6, kCapitals, 32},     {0xD8, 0xDE, kCapitals, 32},
    {0xE0, 0xF6, kSmall, -32},       {0xF8, 0xFE, kSmall, -32},       {0xFF, 0xFF, kSmall, 121},
    {0x100, 0x12F, kEvenPairs},      {0x132, 0x137, kEvenPairs},      {0x139, 0x148, kOddPairs},
    {0x14A, 0x177, kEvenPairs},      {0x178, 0x178, kCapitals, -121}, {0x179, 0x17E, kOddPairs},
    {0x182, 0x185, kEvenPairs},      {0x18F, 0x18F, kCapitals, 202},  {0x1A0, 0x1A5, kEvenPairs},
    {0x1AF, 0x1B0, kOddPairs},       {0x1B3, 0x1B6, kOddPairs},       {0x1C4, 0x1C4, kCapitals, 2},
    {0x1C5, 0x1C5, kSmall, -1},      {0x1C6, 0x1C6, kSmall, -2},      {0x1C7, 0x1C7, kCapitals, 2},
    {0x1C8, 0x1C8, kSmall, -1},      {0x1C9, 0x1C9, kSmall, -2},      {0x1CA, 0x1CA, kCapitals, 2},
    {0x1CB, 0x1CB, kSmall, -1},      {0x1CC, 0x1CC, kSmall, -2},      {0x1CD, 0x1DC, kOddPairs},
    {0x1DE, 0x1EF, kEvenPairs},      {0x1F1, 0x1F1, kCapitals, 2},    {0x1F2, 0x1F2, kSmall, -1},
    {0x1F3, 0x1F3, kSmall, -2},      {0x1F4, 0x1F5, kEvenPairs},      {0x1F8, 0x21F, kEvenPairs},
    {0x222, 0x233, kEvenPairs},      {0x259, 0x259, kSmall, -202},    {0x386, 0x386, kCapitals, 38},
    {0x388, 0x38A, kCapitals, 37},   {0x38C, 0x38C, kCapitals, 64},   {0x38E, 0x38F, kCapitals, 63},
    {0x391, 0x3A1, kCapitals, 32},   {0x3A3, 0x3AB, kCapitals, 32},   {0x3AC, 0x3AC, kSmall, -38},
    {0x3AD, 0x3AF, kSmall, -37},     {0x3B1, 0x3C1, kSmall, -32},     {0x3C2, 0x3C2, kSmall, -31},
    {0x3C3, 0x3CB, kSmall, -32},     {0x3CC, 0x3CC, kSmall, -64},     {0x3CD, 0x3CE, kSmall, -63},
    {0x3D8, 0x3EF, kEvenPairs},      {0x400, 0x40F, kCapitals, 80},   {0x410, 0x42F, kCapitals, 32},
    {0x430, 0x44F, kSmall, -32},     {0x450, 0x45F, kSmall, -80},     {0x460, 0x481, kEvenPairs},
    {0x48A, 0x4BF, kEvenPairs},      {0x4C1, 0x4CE, kOddPairs},       {0x4D0, 0x52F, kEvenPairs},
    {0x531, 0x556, kCapitals, 48},   {0x561, 0x586, kSmall, -48},     {0x1E00, 0x1E95, kEvenPairs},
    {0x1EA0, 0x1EFF, kEvenPairs},    {0x1F00, 0x1F07, kSmall, 8},     {0x1F08, 0x1F0F, kCapitals, -8},
    {0x1F10, 0x1F15, kSmall, 8},     {0x1F18, 0x1F1D, kCapitals, -8}, {0x1F20, 0x1F27, kSmall, 8},
    {0x1F28, 0x1F2F, kCapitals, -8}, {0x1F30, 0x1F37, kSmall, 8},     {0x1F38, 0x1F3F, kCapitals, -8},
    {0x1F40, 0x1F45, kSmall, 8},     {0x1F48, 0x1F4D, kCapitals, -8}, {0x1F60, 0x1F67, kSmall, 8},
    {0x1F68, 0x1F6F, kCapitals, -8}, {0x2160, 0x216F, kCapitals, 16}, {0x2170, 0x217F, kSmall, -16},
    {0x24B6, 0x24CF, kCapitals, 26}, {0x24D0, 0x24E9, kSmall, -26},   {0x2C80, 0x2CE3, kEvenPairs},
    {0xFF21, 0xFF3A, kCapitals, 32}, {0xFF41, 0xFF5A, kSmall, -32},
};

/// The block of a letter; null when it has no other case.
const CaseBlock* case_block(char32_t c) {
  const auto* const after =
      std::upper_bound(std::begin(kCaseBlocks), std::end(kCaseBlocks), c,
                       [](char32_t code, const CaseBlock& block) { return code < block.first; });
  if (after == std::begin(kCaseBlocks) || c > std::prev(after)->last)
    return nullptr;
  return std::prev(after);
}

char32_t moved(char32_t c, std::int32_t distance) {
  return static_cast<char32_t>(static_cast<std::int32_t>(c) + distance);
}

/// Seven bits, so it is a character by itself.
bool is_plain(char c) {
  return static_cast<unsigned char>(c) < 0x80;
}
char plain_upper(char c) {
  return c >= 'a' && c <= 'z' ? static_cast<char>(c - 'a' + 'A') : c;
}

/// How many bytes both begin with.
std::size_t equal_bytes(std::string_view a, std::string_view b) {
  const std::size_t shorter = std::min(a.size(), b.size());
  std::size_t i = 0;
  std::uint64_t of_a = 0;
  std::uint64_t of_b = 0;
  for (; i + sizeof(of_a) <= shorter; i += sizeof(of_a)) {
    std::memcpy(&of_a, a.data() + i, sizeof(of_a));
    std::memcpy(&of_b, b.data() + i, sizeof(of_b));
    if (of_a != of_b)
      break;
  }
  while (i < shorter && a[i] == b[i])
    ++i;
  return i;
}

char32_t upper_code(char32_t c) {
  const CaseBlock* const block = case_block(c);
  if (block == nullptr || block->kind == kCapitals)
    return c;
  if (block->kind == kSmall)
    return moved(c, block->to_other);
  return block->kind == kEvenPairs ? c & ~char32_t{1} : (c - 1) | 1U;
}

char32_t lower_code(char32_t c) {
  const CaseBlock* const block = case_block(c);
  if (block == nullptr || block->kind == kSmall)
    return c;
  if (block->kind == kCapitals)
    return moved(c, block->to_other);
  return block->kind == kEvenPairs ? c | 1U : (c + 1) & ~char32_t{1};
}

/// `plain` maps ASCII, of which most texts consist.
template <typename PlainMap, typename Map>
std::string map_codes(std::string_view text, PlainMap plain, Map map) {
  std::string out;
  out.reserve(text.size());
  for (std::size_t at = 0; at < text.size();) {
    if (static_cast<unsigned char>(text[at]) < 0x80) {
      out.push_back(plain(text[at++]));
      continue;
    }
    const Decoded one = decode_at(text, at);
    if (one.valid) {
      append_utf8(out, map(one.code));
    } else {
      out.push_back(text[at]);
    }
    at += one.size;
  }
  return out;
}

/// The bytes of a text in upper case, one after the other and without a copy of it.
class UpperBytes {
 public:
  explicit UpperBytes(std::string_view text) : text_(text) {}

  /// -1 after the last.
  int next() {
    if (piece_at_ < piece_.size())
      return static_cast<unsigned char>(piece_[piece_at_++]);
    if (at_ == text_.size())
      return -1;
    if (is_plain(text_[at_]))
      return plain_upper(text_[at_++]);
    const Decoded one = decode_at(text_, at_);
    piece_.assign(1, text_[at_]);
    if (one.valid) {
      piece_.clear();
      append_utf8(piece_, upper_code(one.code));
    }
    at_ += one.size;
    piece_at_ = 1;
    return static_cast<unsigned char>(piece_.front());
  }

 private:
  std::string_view text_;
  std::size_t at_ = 0;
  std::string piece_;  ///< of one character, so never on the heap
  std::size_t piece_at_ = 0;
};

int compare_upper(std::string_view a, std::string_view b) {
  UpperBytes of_a(a);
  UpperBytes of_b(b);
  for (;;) {
    const int left = of_a.next();
    const int right = of_b.next();
    if (left != right)
      return left < right ? -1 : 1;
    if (left < 0)
      return 0;
  }
}

/// Byte position after `count` characters.
std::size_t skip(std::string_view text, std::size_t count) {
  std::size_t at = 0;
  while (count > 0 && at < text.size()) {
    at += decode_at(text, at).size;
    --count;
  }
  return at;
}

}  // namespace

std::string_view trim(std::string_view text) {
  const std::size_t first = text.find_first_not_of(' ');
  if (first == npos)
    return {};
  return text.substr(first, text.find_last_not_of(' ') - first + 1);
}

std::string_view trim_right(std::string_view text) {
  const std::size_t last = text.find_last_not_of(' ');
  return last == npos ? std::string_view{} : text.substr(0, last + 1);
}

bool is_ascii(std::string_view text) {
  std::uint64_t bits = 0;
  for (std::uint64_t eight = 0; text.size() >= sizeof(eight); text.remove_prefix(sizeof(eight))) {
    std::memcpy(&eight, text.data(), sizeof(eight));
    bits |= eight;
  }
  for (const char c : text)
    bits |= static_cast<unsigned char>(c);
  return (bits & 0x8080808080808080U) == 0;
}

std::string upper(std::string_view text) {
  if (!is_ascii(text))
    return map_codes(text, plain_upper, upper_code);
  std::string out(text);
  for (char& c : out)
    c = plain_upper(c);
  return out;
}
std::string lower(std::string_view text) {
  return map_codes(
      text, [](char c) { return c >= 'A' && c <= 'Z' ? static_cast<char>(c + 32) : c; }, lower_code);
}

int compare_fold(std::string_view a, std::string_view b) {
  const std::size_t shorter = std::min(a.size(), b.size());
  std::size_t i = equal_bytes(a, b);
  // Not within a character.
  while (i > 0 && !is_plain(a[i - 1]))
    --i;
  for (; i < shorter; ++i) {
    if (!is_plain(a[i]) || !is_plain(b[i]))
      return compare_upper(a.substr(i), b.substr(i));
    const char left = plain_upper(a[i]);
    const char right = plain_upper(b[i]);
    if (left != right)
      return left < right ? -1 : 1;
  }
  if (a.size() == b.size())
    return 0;
  return a.size() < b.size() ? -1 : 1;
}

bool equals_fold(std::string_view a, std::string_view b) {
  return a.size() == b.size() && (a == b || compare_fold(a, b) == 0);
}

std::size_t hash_fold(std::string_view text) {
  // FNV-1a with the constants for 64 bits.
  constexpr std::uint64_t kStart = 0xCBF29CE484222325U;
  constexpr std::uint64_t kPrime = 0x100000001B3U;
  std::uint64_t hash = kStart;
  const auto take = [&hash](char c) { hash = (hash ^ static_cast<unsigned char>(c)) * kPrime; };
  for (std::size_t i = 0; i < text.size(); ++i) {
    if (!is_plain(text[i])) {
      UpperBytes rest(text.substr(i));
      for (int byte = rest.next(); byte >= 0; byte = rest.next())
        take(static_cast<char>(byte));
      break;
    }
    take(plain_upper(text[i]));
  }
  return hash;
}

bool starts_with_fold(std::string_view text, std::string_view prefix) {
  return text.size() >= prefix.size() && equals_fold(text.substr(0, prefix.size()), prefix);
}

std::size_t find_fold(std::string_view text, std::string_view needle, std::size_t from) {
  if (from > text.size())
    return npos;
  if (is_ascii(text) && is_ascii(needle)) {
    const auto same = [](char one, char other) { return plain_upper(one) == plain_upper(other); };
    const auto found = std::search(text.begin() + static_cast<std::ptrdiff_t>(from), text.end(),
                                   needle.begin(), needle.end(), same);
    return found == text.end() && !needle.empty() ? npos : static_cast<std::size_t>(found - text.begin());
  }
  return upper(text).find(upper(needle), from);
}

std::size_t length(std::string_view text) {
  std::size_t count = 0;
  for (std::size_t at = 0; at < text.size(); at += decode_at(text, at).size)
    ++count;
  return count;
}

std::string_view left(std::string_view text, std::size_t count) {
  return text.substr(0, skip(text, count));
}

std::string_view right(std::string_view text, std::size_t count) {
  const std::size_t all = length(text);
  return count >= all ? text : text.substr(skip(text, all - count));
}

std::string_view mid(std::string_view text, std::size_t start, std::size_t count) {
  if (start == 0)
    return {};
  const std::string_view rest = text.substr(skip(text, start - 1));
  return count == npos ? rest : left(rest, count);
}

std::string reverse(std::string_view text) {
  std::string out;
  out.reserve(text.size());
  std::vector<std::string_view> pieces;
  for (std::size_t at = 0; at < text.size();) {
    const std::size_t size = decode_at(text, at).size;
    pieces.push_back(text.substr(at, size));
    at += size;
  }
  for (auto piece = pieces.rbegin(); piece != pieces.rend(); ++piece)
    out += *piece;
  return out;
}

std::u32string to_utf32(std::string_view text) {
  std::u32string out;
  out.reserve(text.size());
  for (std::size_t at = 0; at < text.size();) {
    const Decoded one = decode_at(text, at);
    out.push_back(one.valid ? one.code : kReplacement);
    at += one.size;
  }
  return out;
}

std::string to_utf8(std::u32string_view text) {
  std::string out;
  out.reserve(text.size());
  for (const char32_t code : text) {
    const bool surrogate = code >= 0xD800 && code <= 0xDFFF;
    append_utf8(out, surrogate || code > 0x10FFFF ? kReplacement : code);
  }
  return out;
}

bool is_valid_utf8(std::string_view text) {
  if (is_ascii(text))
    return true;
  for (std::size_t at = 0; at < text.size();) {
    const Decoded one = decode_at(text, at);
    if (!one.valid)
      return false;
    at += one.size;
  }
  return true;
}

std::string to_valid_utf8(std::string_view text) {
  return is_valid_utf8(text) ? std::string(text) : to_utf8(to_utf32(text));
}

std::vector<std::string> split(std::string_view text, char separator) {
  std::vector<std::string> pieces;
  if (text.empty())
    return pieces;
  for (std::size_t from = 0;;) {
    const std::size_t to = text.find(separator, from);
    pieces.emplace_back(text.substr(from, to == npos ? npos : to - from));
    if (to == npos)
      return pieces;
    from = to + 1;
  }
}

std::int32_t val(std::string_view text) {
  const std::size_t first = text.find_first_not_of(" \t");
  if (first == npos)
    return 0;
  text.remove_prefix(first);
  const bool negative = text.front() == '-';
  if (negative || text.front() == '+')
    text.remove_prefix(1);
  std::int64_t number = 0;
  constexpr std::int64_t kMost = std::numeric_limits<std::int32_t>::max();
  for (const char c : text) {
    if (c < '0' || c > '9')
      break;
    number = std::min(number * 10 + (c - '0'), kMost);
  }
  return static_cast<std::int32_t>(negative ? -number : number);
}

std::optional<std::int32_t> to_number(std::string_view text) {
  text = trim(text);
  std::int32_t number = 0;
  const char* const end = text.data() + text.size();
  const auto result = std::from_chars(text.data(), end, number);
  if (text.empty() || result.ec != std::errc{} || result.ptr != end)
    return std::nullopt;
  return number;
}

std::string to_text(std::int64_t number, int digits) {
  std::array<char, 24> buffer{};
  const char* const end = std::to_chars(buffer.data(), buffer.data() + buffer.size(), number).ptr;
  std::string text(buffer.data(), static_cast<std::size_t>(end - buffer.data()));
  const auto width = static_cast<std::size_t>(std::clamp(digits, 0, 20));
  if (text.size() < width)
    text.insert(number < 0 ? 1 : 0, width - text.size(), '0');
  return text;
}

std::string hex_byte(unsigned char byte) {
  static constexpr std::string_view kDigits = "0123456789ABCDEF";
  return {kDigits[byte >> 4U], kDigits[byte & 15U]};
}

std::optional<unsigned> hex_digit(char digit) {
  if (digit >= '0' && digit <= '9')
    return static_cast<unsigned>(digit - '0');
  if (digit >= 'a' && digit <= 'f')
    return static_cast<unsigned>(digit - 'a') + 10U;
  if (digit >= 'A' && digit <= 'F')
    return static_cast<unsigned>(digit - 'A') + 10U;
  return std::nullopt;
}

std::string to_hex(std::uint32_t number) {
  std::array<char, 16> buffer{};
  const int size = std::snprintf(buffer.data(), buffer.size(), "0x%08X", number);
  return {buffer.data(), static_cast<std::size_t>(size)};
}

}  // namespace twk::base
