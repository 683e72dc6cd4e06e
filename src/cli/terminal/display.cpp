#include "cli/terminal/display.hpp"

#include <unistd.h>
#include <uniwidth.h>

#include <algorithm>
#include <cstdlib>

#include "base/text.hpp"

namespace twk::cli {
namespace {

/// A control character has no width of its own and counts as one column.
std::size_t width_of(char32_t code) {
  const int width = uc_width(code, "UTF-8");
  return width < 0 ? 1 : static_cast<std::size_t>(width);
}

/// Characters that change the display order, so that a name can look like another; those that join letters of
/// a script stay.
bool turns_text(char32_t code) {
  return code == 0x200E || code == 0x200F || (code >= 0x202A && code <= 0x202E) ||
         (code >= 0x2066 && code <= 0x2069);
}

/// Most texts are: each byte is a character of one column.
bool is_plain(std::string_view text) {
  return std::ranges::all_of(text, [](char c) { return c >= ' ' && c <= '~'; });
}

}  // namespace

std::size_t display_width(std::string_view text) {
  if (is_plain(text))
    return text.size();
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

std::string fill(std::string_view text, std::size_t indent) {
  constexpr std::size_t kWidth = 79;
  std::string result;
  std::size_t column = 0;
  for (std::size_t begin = 0; begin < text.size();) {
    const std::size_t word = std::min(text.find_first_not_of(' ', begin), text.size());
    const std::size_t end = std::min(text.find(' ', word), text.size());
    const std::string_view blanks = text.substr(begin, word - begin);
    const std::string_view letters = text.substr(word, end - word);
    const std::size_t width = display_width(letters);
    if (column > indent && column + blanks.size() + width > kWidth) {
      result.append("\n").append(indent, ' ').append(letters);
      column = indent + width;
    } else {
      result.append(blanks).append(letters);
      column += blanks.size() + width;
    }
    begin = end;
  }
  return result;
}

std::string printable(std::string_view text, bool keep_lines) {
  if (is_plain(text))
    return std::string(text);
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
