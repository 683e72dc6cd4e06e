#include "windows/editors/logon_hours.hpp"

#include <algorithm>
#include <array>

#include "base/text.hpp"
#include "session/session.hpp"
#include "windows/editors/hours_zone.hpp"

namespace twk::windows {
namespace {

using session::Session;

constexpr std::size_t kCells = static_cast<std::size_t>(kDays) * kHours;

constexpr std::array<std::string_view, kDays> kDayNames = {"Sunday",   "Monday", "Tuesday", "Wednesday",
                                                           "Thursday", "Friday", "Saturday"};

/// The cell of an hour of UTC.
std::size_t cell_of_bit(std::size_t bit, int hours_ahead) {
  return (bit + static_cast<std::size_t>(kDays * kHours + hours_ahead)) % kCells;
}

struct Rectangle {
  int top;
  int left;
  int bottom;
  int right;
};

Rectangle rectangle(int from_row, int from_col, int to_row, int to_col) {
  const auto row = [](int number) { return std::clamp(number, 1, kDays); };
  const auto col = [](int number) { return std::clamp(number, 1, kHours); };
  return {std::min(row(from_row), row(to_row)), std::min(col(from_col), col(to_col)),
          std::max(row(from_row), row(to_row)), std::max(col(from_col), col(to_col))};
}

std::string name_of(const Rectangle& area) {
  std::string days(day_name(area.top));
  if (area.bottom > area.top)
    days += " through to " + std::string(day_name(area.bottom));
  return days + " - " + hour_name(area.left - 1) + " to " + hour_name(area.right);
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

/// Bytes of the day's name and of a colon in front of the line, 0 when it has none, none for another word.
std::optional<std::size_t> day_in_front(std::string_view line, std::size_t start, std::string_view day) {
  std::size_t end = start;
  while (end < line.size() && is_letter(line[end]))
    ++end;
  const std::string_view word = line.substr(start, end - start);
  // A row of "X" is no name.
  if (word.empty() || word.find_first_not_of("Xx") == base::npos)
    return start;
  if (!base::equals_fold(word, day) && !base::equals_fold(word, day.substr(0, 3)))
    return std::nullopt;
  return end < line.size() && line[end] == ':' ? end + 1 : end;
}

/// Appends the hours of one day; tells what is wrong.
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

void show_bytes(Session& session, const base::Bytes& bytes, HoursZone zone) {
  session::Logon_Hours& window = session.logon_hours;
  window.hours_ahead = hours_ahead(session.platform, zone);
  window.MSFlexGrid1 = cells_of_bytes(bytes, window.hours_ahead);
  window.zone_note.caption = zone_note(session.platform, zone);
}

/// Lets the person say whose hours were painted, once, and keeps the answer. False for no answer.
bool ask_zone(Session& session) {
  session::Logon_Hours& window = session.logon_hours;
  const std::string readings = two_readings(session.platform, window.MSFlexGrid1);
  if (readings.empty() || chosen_zone(session.platform))
    return true;
  const platform::Answer answer = session.platform.dialogs.MsgBox(
      readings +
          ".\r\n\r\nAre these hours of this workstation's zone? \"No\" takes them as hours of UTC+12. The "
          "answer is kept and can be changed in this window.",
      platform::Buttons::kYesNoCancel, platform::Icon::kQuestion, "Logon Hours");
  if (answer == platform::Answer::kCancel)
    return false;
  const HoursZone zone = answer == platform::Answer::kYes ? HoursZone::kWorkstation : HoursZone::kFixed;
  choose_zone(session.platform, zone);
  window.Zone.index = static_cast<int>(zone);
  window.hours_ahead = hours_ahead(session.platform, zone);
  return true;
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

void LogonHours_Click(Session& session) {
  Logon_Hours_Load(session);
  session.platform.dialogs.show_modal("Logon_Hours");
}

void Logon_Hours_Load(Session& session) {
  session::Logon_Hours& window = session.logon_hours;
  const HoursZone zone = zone_in_force(session.platform);
  window.Zone.index = static_cast<int>(zone);
  show_bytes(session, session.TemplateLogonHours, zone);
  window.Option1.index = 0;
  window.Label2.caption = std::string();
  window.Command2.enabled = session.form1.savetemplate.enabled.get();
  window.hint.caption = window.Command2.enabled.get()
                            ? std::string()
                            : "The template is not being edited: what is painted here cannot be stored.";
}

void show_selected(Session& session, int from_row, int from_col, int to_row, int to_col) {
  session.logon_hours.Label2.caption = name_of(rectangle(from_row, from_col, to_row, to_col));
}

void select_cells(Session& session, int from_row, int from_col, int to_row, int to_col) {
  session::Logon_Hours& window = session.logon_hours;
  const Rectangle area = rectangle(from_row, from_col, to_row, to_col);
  std::vector<bool> cells = window.MSFlexGrid1;
  for (int row = area.top; row <= area.bottom; ++row) {
    for (int col = area.left; col <= area.right; ++col)
      cells[static_cast<std::size_t>((row - 1) * kHours + col - 1)] = window.Option1.index == 0;
  }
  window.MSFlexGrid1 = std::move(cells);
  window.Label2.caption = name_of(area);
}

void Zone_Click(Session& session) {
  session::Logon_Hours& window = session.logon_hours;
  const base::Bytes bytes = bytes_of_cells(window.MSFlexGrid1, window.hours_ahead);
  const auto zone = static_cast<HoursZone>(window.Zone.index.get());
  choose_zone(session.platform, zone);
  show_bytes(session, bytes, zone);
}

bool Logon_Hours_Command2_Click(Session& session) {
  session::Logon_Hours& window = session.logon_hours;
  if (!window.Command2.enabled.get())
    return true;
  if (bytes_of_cells(window.MSFlexGrid1, window.hours_ahead) == session.TemplateLogonHours)
    return true;
  if (!ask_zone(session))
    return false;
  session.TemplateLogonHours = bytes_of_cells(window.MSFlexGrid1, window.hours_ahead);
  return true;
}

void Logon_Hours_Command1_Click(Session& session) {
  session.logon_hours.Label2.caption = std::string();
}

}  // namespace twk::windows
