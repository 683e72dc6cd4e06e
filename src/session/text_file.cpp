#include "session/text_file.hpp"

#include <algorithm>

#include "base/text.hpp"
#include "base/text_file.hpp"

namespace twk::session {
namespace {

constexpr std::string_view kLineEnd = "\r\n";

/// The text with the characters for which `hides` is true replaced by their numbers.
template <typename Hides>
std::string by_number(std::string_view text, Hides hides) {
  if (!hides(text))
    return std::string(text);
  std::string out;
  for (const char32_t code : base::to_utf32(text)) {
    const std::string one = base::to_utf8(std::u32string_view(&code, 1));
    out += hides(one) ? "<" + base::code_point_name(code) + ">" : one;
  }
  return out;
}

bool holds_control(std::string_view text) {
  return base::find_control_character(text).has_value();
}

/// The bytes in code page 1252, unless they would be taken for UTF-8.
std::optional<std::string> unmistakable_ansi(std::string_view text) {
  std::optional<std::string> ansi = base::to_ansi(text);
  const bool plain = text.size() == base::length(text);
  return ansi && (plain || !base::is_valid_utf8(*ansi)) ? ansi : std::nullopt;
}

}  // namespace

std::string text_in_log(std::string_view text) {
  return by_number(text, [](std::string_view part) { return holds_control(part) || !base::to_ansi(part); });
}

std::string log_line(std::string_view text) {
  return base::to_ansi(text_in_log(text)).value_or(std::string()).append(kLineEnd);
}

std::string table_bytes(const std::vector<std::string>& lines) {
  std::string text;
  for (const std::string& line : lines)
    text.append(by_number(line, holds_control)).append(kLineEnd);
  std::optional<std::string> ansi = base::to_ansi(text);
  if (ansi && !ansi->starts_with(base::kByteOrderMark))
    return *std::move(ansi);
  return std::string(base::kByteOrderMark) + base::to_valid_utf8(text);
}

std::vector<std::string> table_lines(std::string_view bytes) {
  const bool utf8 = bytes.starts_with(base::kByteOrderMark);
  std::vector<std::string> lines = base::split(base::without_mark(bytes), '\n');
  if (!lines.empty() && lines.back().empty())
    lines.pop_back();
  for (std::string& line : lines) {
    if (line.ends_with('\r'))
      line.pop_back();
    line = utf8 ? base::to_valid_utf8(line) : base::from_ansi(line);
  }
  return lines;
}

void RunFile::open(platform::Files& files, std::string_view path, bool fresh) {
  files_ = &files;
  path_ = path;
  utf8_ = !fresh && files.exists(path) && files.read(path).starts_with(base::kByteOrderMark);
  file_ = files.open_append(path, fresh);
}

void RunFile::line(std::string_view text) {
  if (!file_)
    return;
  std::optional<std::string> bytes;
  if (!utf8_) {
    bytes = unmistakable_ansi(text);
    if (!bytes)
      turn_into_utf8();
  }
  file_->write(bytes.value_or(base::to_valid_utf8(text)).append(kLineEnd));
}

void RunFile::turn_into_utf8() {
  file_.reset();
  files_->write(path_, std::string(base::kByteOrderMark) + base::from_ansi(files_->read(path_)));
  file_ = files_->open_append(path_);
  utf8_ = true;
}

}  // namespace twk::session
