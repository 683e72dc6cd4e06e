#include "batch/import_file.hpp"

#include <algorithm>

#include "base/text.hpp"
#include "base/text_file.hpp"
#include "session/session.hpp"

namespace twk::batch {

bool next_line(std::string_view text, std::size_t& position, std::string_view& line) {
  if (position >= text.size())
    return false;
  // A search for one of two characters looks for both at each byte.
  const auto is_end = [](char c) { return c == '\n' || c == '\r'; };
  const auto found = std::find_if(text.begin() + static_cast<std::ptrdiff_t>(position), text.end(), is_end);
  const std::size_t end = found == text.end() ? base::npos : static_cast<std::size_t>(found - text.begin());
  line = text.substr(position, end == base::npos ? base::npos : end - position);
  position = end == base::npos ? text.size() : end + 1;
  if (end != base::npos && text[end] == '\r' && position < text.size() && text[position] == '\n')
    ++position;
  return true;
}

std::string_view without_error_heading(std::string_view bytes) {
  const std::string_view text = base::without_mark(bytes);
  std::size_t position = 0;
  std::string_view line;
  for (std::int32_t number = 1; number <= kErrorHeadingLines; ++number) {
    if (!next_line(text, position, line))
      return bytes;
    const bool is_time = number == 2;
    if (!is_time && line != (number == 3 ? kNotCreated : session::kAsterisks))
      return bytes;
  }
  return text.substr(position);
}

ImportLines::ImportLines(std::string_view bytes)
    : bytes_(bytes), utf8_(base::is_valid_utf8(base::without_mark(bytes))) {
  const std::size_t rest = without_error_heading(bytes).size();
  const std::size_t text = base::without_mark(bytes).size();
  of_errors_ = rest < text;
  position_ = bytes.size() - std::min(rest, text);
  number_ = of_errors_ ? kErrorHeadingLines : 0;
}

bool ImportLines::next() {
  start_ = position_;
  if (!next_line(bytes_, position_, line_))
    return false;
  if (!utf8_) {
    converted_ = base::from_ansi(line_);
    line_ = converted_;
  }
  const bool is_last = position_ >= bytes_.size();
  if (of_errors_ && is_last && (line_ == kErrorHalt || line_ == kWarningHalt))
    return false;
  ++number_;
  return true;
}

std::int32_t ImportLines::last_number() const {
  std::int32_t number = number_;
  std::size_t position = position_;
  for (std::string_view line; next_line(bytes_, position, line);)
    ++number;
  return number;
}

void ImportLines::put_back() {
  position_ = start_;
  --number_;
}

void split_import_line(session::ImportState& state, std::string_view line) {
  constexpr std::size_t kMostCounted = 32767;
  state.ImportLine = line;
  std::size_t count = 0;
  // An empty line has no fields, one with n commas has n + 1.
  for (std::size_t begin = 0; begin <= line.size() && !line.empty(); ++count) {
    const std::size_t end = std::min(line.find(',', begin), line.size());
    if (count < session::kMostImportFields)
      state.ImportFields.at(count + 1) = line.substr(begin, end - begin);
    begin = end + 1;
  }
  for (std::size_t i = count; i < session::kMostImportFields; ++i)
    state.ImportFields.at(i + 1).clear();
  state.ImportFieldCount = static_cast<std::int16_t>(std::min(count, kMostCounted));
}

}  // namespace twk::batch
