#include "cli/terminal/display.hpp"

#include <unistd.h>

#include <algorithm>
#include <array>
#include <cstdlib>

#include "base/text.hpp"

namespace twk::cli {
namespace {

struct Range {
  char32_t first;
  char32_t last;
};

// Unicode 15: the blocks of combining marks and invisible characters that names and paths may contain.
constexpr std::array kZeroWidth = {Range{0x0300, 0x036F}, Range{0x0483, 0x0489}, Range{0x0591, 0x05BD},
                                   Range{0x0610, 0x061A}, Range{0x064B, 0x065F}, Range{0x1AB0, 0x1AFF},
                                   Range{0x1DC0, 0x1DFF}, Range{0x200B, 0x200F}, Range{0x202A, 0x202E},
                                   Range{0x2060, 0x2064}, Range{0x20D0, 0x20FF}, Range{0xFE00, 0xFE0F},
                                   Range{0xFE20, 0xFE2F}, Range{0xFEFF, 0xFEFF}, Range{0xE0100, 0xE01EF}};

// Unicode 15, East Asian Width W and F, by block.
constexpr std::array kWide = {Range{0x1100, 0x115F},   Range{0x2E80, 0x303E},   Range{0x3041, 0x33FF},
                              Range{0x3400, 0x4DBF},   Range{0x4E00, 0x9FFF},   Range{0xA000, 0xA4CF},
                              Range{0xA960, 0xA97F},   Range{0xAC00, 0xD7A3},   Range{0xF900, 0xFAFF},
                              Range{0xFE30, 0xFE6F},   Range{0xFF00, 0xFF60},   Range{0xFFE0, 0xFFE6},
                              Range{0x1F300, 0x1F64F}, Range{0x1F900, 0x1F9FF}, Range{0x20000, 0x3FFFD}};

template <std::size_t Size>
bool holds(const std::array<Range, Size>& ranges, char32_t code) {
  const auto after = std::upper_bound(ranges.begin(), ranges.end(), code,
                                      [](char32_t value, const Range& range) { return value < range.first; });
  return after != ranges.begin() && code <= std::prev(after)->last;
}

std::size_t width_of(char32_t code) {
  if (holds(kZeroWidth, code))
    return 0;
  return holds(kWide, code) ? 2 : 1;
}

/// Characters that change the display order, so that a name can look like another; those that join letters of
/// a script stay.
bool turns_text(char32_t code) {
  return code == 0x200E || code == 0x200F || (code >= 0x202A && code <= 0x202E) ||
         (code >= 0x2066 && code <= 0x2069);
}

}  // namespace

std::size_t display_width(std::string_view text) {
  std::size_t width = 0;
  for (const char32_t code : base::to_utf32(text))
    width += width_of(code);
  return width;
}

std::string_view clip(std::string_view text, std::size_t width) {
  std::size_t used = 0;
  std::size_t characters = 0;
  for (const char32_t code : base::to_utf32(text)) {
    used += width_of(code);
    if (used > width)
      return base::left(text, characters);
    ++characters;
  }
  return text;
}

std::string pad(std::string_view text, std::size_t width) {
  std::string out(text);
  const std::size_t used = display_width(text);
  if (used < width)
    out.append(width - used, ' ');
  return out;
}

std::string printable(std::string_view text, bool keep_lines) {
  std::string out;
  for (const char32_t code : base::to_utf32(text)) {
    if (keep_lines && code == U'\r')
      continue;
    const std::string one = base::to_utf8(std::u32string_view(&code, 1));
    const auto control =
        turns_text(code) ? base::find_invisible_character(one) : base::find_control_character(one);
    out += control && !(keep_lines && code == U'\n') ? "<" + *control + ">" : one;
  }
  return out;
}

std::string error_number_text(std::uint32_t number) {
  return number < 65536 ? std::to_string(number) : base::to_hex(number);
}

bool is_terminal(int descriptor) {
  return isatty(descriptor) == 1;
}

bool can_move_cursor(int descriptor) {
  const char* terminal = std::getenv("TERM");  // NOLINT(concurrency-mt-unsafe): one thread
  return is_terminal(descriptor) && terminal != nullptr && std::string_view(terminal) != "dumb";
}

bool may_colour(int descriptor) {
  const char* no_colour = std::getenv("NO_COLOR");  // NOLINT(concurrency-mt-unsafe): one thread
  return (no_colour == nullptr || *no_colour == '\0') && can_move_cursor(descriptor);
}

}  // namespace twk::cli
