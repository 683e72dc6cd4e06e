#include "directory/hours_of_week.hpp"

#include <algorithm>
#include <array>
#include <optional>

#include "base/text.hpp"

namespace twk::directory {
namespace {

constexpr std::size_t kCells = static_cast<std::size_t>(kDays) * kHours;

constexpr std::array<std::string_view, kDays> kDayNames = {"Sunday",   "Monday", "Tuesday", "Wednesday",
                                                           "Thursday", "Friday", "Saturday"};

/// The cell of an hour of UTC.
std::size_t cell_of_bit(std::size_t bit, int hours_ahead) {
  return (bit + static_cast<std::size_t>(kDays * kHours + hours_ahead)) % kCells;
}

std::optional<bool> permitted_by(char mark) {
  if (mark == '#' || mark == '1' || mark == 'X' || mark == 'x')
    return true;
  if (mark == '.' || mark == '0' || mark == '-')
    return false;
  return std::nullopt;
}

HoursText refusal(std::size_t line, std::size_t column, const std::string& what) {
  std::string place = "line " + std::to_string(line);
  if (column > 0)
    place += ", column " + std::to_string(column);
  return {{}, place + ": " + what};
}

bool is_letter(char c) {
  return (c >= 'a' && c <= 'z') || (c >= 'A' && c <= 'Z');
}

/// Length in bytes of the day's name and a colon at the beginning of the line, 0 when it has none, none for
/// another word.
std::optional<std::size_t> day_in_front(std::string_view line, std::size_t start, std::string_view day) {
  std::size_t end = start;
  while (end < line.size() && is_letter(line[end]))
    ++end;
  const std::string_view word = line.substr(start, end - start);
  // A row of "X" is not a name.
  if (word.empty() || word.find_first_not_of("Xx") == base::npos)
    return start;
  if (!base::equals_fold(word, day) && !base::equals_fold(word, day.substr(0, 3)))
    return std::nullopt;
  return end < line.size() && line[end] == ':' ? end + 1 : end;
}

/// Appends the hours of one day; returns what is wrong.
std::optional<HoursText> parse_day(std::string_view line, std::size_t number, std::vector<bool>& cells) {
  const std::string_view day = kDayNames.at(cells.size() / kHours);
  const std::size_t begin = line.find_first_not_of(" \t");
  const std::optional<std::size_t> marks = day_in_front(line, begin, day);
  if (!marks)
    return refusal(number, begin + 1, "this line is for " + std::string(day));
  const std::size_t wanted = cells.size() + kHours;
  for (std::size_t i = *marks; i < line.size(); ++i) {
    if (line[i] == ' ' || line[i] == '\t')
      continue;
    const std::optional<bool> permitted = permitted_by(line[i]);
    if (!permitted)
      return refusal(number, base::length(line.substr(0, i)) + 1,
                     "not one of # 1 X (permitted) and . 0 - (denied)");
    if (cells.size() == wanted)
      return refusal(number, base::length(line.substr(0, i)) + 1, "more than 24 hours");
    cells.push_back(*permitted);
  }
  if (cells.size() < wanted)
    return refusal(number, 0, std::to_string(kHours - (wanted - cells.size())) + " hours instead of 24");
  return std::nullopt;
}

}  // namespace

std::string_view day_name(int row) {
  return kDayNames.at(static_cast<std::size_t>(row - 1));
}

std::string hour_name(int hour) {
  const int of_half = hour % 12 == 0 ? 12 : hour % 12;
  return std::to_string(of_half) + (hour % kHours < 12 ? "am" : "pm");
}

std::vector<bool> cells_of_bytes(const base::Bytes& bytes, int hours_ahead) {
  std::vector<bool> cells(kCells, true);
  for (std::size_t bit = 0; bit < std::min(kCells, bytes.size() * 8); ++bit)
    cells[cell_of_bit(bit, hours_ahead)] = (bytes[bit / 8] >> (bit % 8) & 1U) != 0;
  return cells;
}

base::Bytes bytes_of_cells(const std::vector<bool>& cells, int hours_ahead) {
  base::Bytes bytes(kCells / 8, 0);
  for (std::size_t bit = 0; bit < kCells; ++bit) {
    if (cells.at(cell_of_bit(bit, hours_ahead)))
      bytes[bit / 8] = static_cast<base::Bytes::value_type>(bytes[bit / 8] | 1U << (bit % 8));
  }
  return bytes;
}

std::vector<std::string> text_of_cells(const std::vector<bool>& cells) {
  std::vector<std::string> lines(kDays);
  for (std::size_t i = 0; i < kCells; ++i)
    lines[i / kHours] += cells.at(i) ? '#' : '.';
  return lines;
}

HoursText parse_hours(const std::vector<std::string>& lines) {
  std::vector<bool> cells;
  for (std::size_t i = 0; i < lines.size(); ++i) {
    if (lines[i].find_first_not_of(" \t") == std::string::npos)
      continue;
    if (cells.size() == kCells)
      return refusal(i + 1, 0, "more than seven days");
    if (const auto wrong = parse_day(lines[i], i + 1, cells))
      return *wrong;
  }
  if (cells.size() < kCells)
    return refusal(lines.size() + 1, 0, std::to_string(cells.size() / kHours) + " days instead of seven");
  return {std::move(cells), {}};
}

}  // namespace twk::directory
