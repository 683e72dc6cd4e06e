#include "windows/editors/logon_hours.hpp"

#include <algorithm>

#include "directory/hours_of_week.hpp"
#include "directory/hours_zone.hpp"
#include "windows/state/desktop.hpp"
#include "windows/state/editor_windows.hpp"
#include "windows/state/form1.hpp"

namespace twk::windows {
namespace {

struct Rectangle {
  int top;
  int left;
  int bottom;
  int right;
};

Rectangle rectangle(int from_row, int from_col, int to_row, int to_col) {
  const auto row = [](int number) { return std::clamp(number, 1, directory::kDays); };
  const auto col = [](int number) { return std::clamp(number, 1, directory::kHours); };
  return {std::min(row(from_row), row(to_row)), std::min(col(from_col), col(to_col)),
          std::max(row(from_row), row(to_row)), std::max(col(from_col), col(to_col))};
}

std::string name_of(const Rectangle& area) {
  std::string days(directory::day_name(area.top));
  if (area.bottom > area.top)
    days += " through to " + std::string(directory::day_name(area.bottom));
  return days + " - " + directory::hour_name(area.left - 1) + " to " + directory::hour_name(area.right);
}

void show_bytes(Desktop& session, const base::Bytes& bytes, directory::HoursZone zone) {
  Logon_Hours& window = session.logon_hours;
  window.hours_ahead = directory::hours_ahead(session.platform, zone);
  window.MSFlexGrid1 = directory::cells_of_bytes(bytes, window.hours_ahead);
  window.zone_note.caption = directory::zone_note(session.platform, zone);
}

/// Asks the person once in which zone the hours were painted, and stores the answer. False for no answer.
bool ask_zone(Desktop& session) {
  Logon_Hours& window = session.logon_hours;
  const std::string readings = directory::two_readings(session.platform, window.MSFlexGrid1);
  if (readings.empty() || directory::chosen_zone(session.platform))
    return true;
  const platform::Answer answer = session.platform.dialogs.MsgBox(
      readings +
          ".\r\n\r\nAre these hours of this workstation's zone? \"No\" takes them as hours of UTC+12. The "
          "answer is kept and can be changed in this window.",
      platform::Buttons::kYesNoCancel, platform::Icon::kQuestion, "Logon Hours");
  if (answer == platform::Answer::kCancel)
    return false;
  const directory::HoursZone zone =
      answer == platform::Answer::kYes ? directory::HoursZone::kWorkstation : directory::HoursZone::kFixed;
  directory::choose_zone(session.platform, zone);
  window.Zone.index = static_cast<int>(zone);
  window.hours_ahead = directory::hours_ahead(session.platform, zone);
  return true;
}

}  // namespace

void LogonHours_Click(Desktop& session) {
  Logon_Hours_Load(session);
  session.platform.dialogs.show_modal("Logon_Hours");
}

void Logon_Hours_Load(Desktop& session) {
  Logon_Hours& window = session.logon_hours;
  const directory::HoursZone zone = directory::zone_in_force(session.platform);
  window.Zone.index = static_cast<int>(zone);
  show_bytes(session, session.TemplateLogonHours, zone);
  window.Option1.index = 0;
  window.Label2.caption = std::string();
  window.Command2.enabled = session.form1.savetemplate.enabled.get();
  window.hint.caption = window.Command2.enabled.get()
                            ? std::string()
                            : "The template is not being edited: what is painted here cannot be stored.";
}

void show_selected(Desktop& session, int from_row, int from_col, int to_row, int to_col) {
  session.logon_hours.Label2.caption = name_of(rectangle(from_row, from_col, to_row, to_col));
}

void select_cells(Desktop& session, int from_row, int from_col, int to_row, int to_col) {
  Logon_Hours& window = session.logon_hours;
  const Rectangle area = rectangle(from_row, from_col, to_row, to_col);
  std::vector<bool> cells = window.MSFlexGrid1;
  for (int row = area.top; row <= area.bottom; ++row) {
    for (int col = area.left; col <= area.right; ++col)
      cells[static_cast<std::size_t>((row - 1) * directory::kHours + col - 1)] = window.Option1.index == 0;
  }
  window.MSFlexGrid1 = std::move(cells);
  window.Label2.caption = name_of(area);
}

void Zone_Click(Desktop& session) {
  Logon_Hours& window = session.logon_hours;
  const base::Bytes bytes = directory::bytes_of_cells(window.MSFlexGrid1, window.hours_ahead);
  const auto zone = static_cast<directory::HoursZone>(window.Zone.index.get());
  directory::choose_zone(session.platform, zone);
  show_bytes(session, bytes, zone);
}

bool Logon_Hours_Command2_Click(Desktop& session) {
  Logon_Hours& window = session.logon_hours;
  if (!window.Command2.enabled.get())
    return true;
  if (directory::bytes_of_cells(window.MSFlexGrid1, window.hours_ahead) == session.TemplateLogonHours)
    return true;
  if (!ask_zone(session))
    return false;
  session.TemplateLogonHours = directory::bytes_of_cells(window.MSFlexGrid1, window.hours_ahead);
  return true;
}

void Logon_Hours_Command1_Click(Desktop& session) {
  session.logon_hours.Label2.caption = std::string();
}

}  // namespace twk::windows
