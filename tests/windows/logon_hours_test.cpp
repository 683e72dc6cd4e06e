#include "windows/editors/logon_hours.hpp"
#include "directory/hours_of_week.hpp"

#include "support/world.hpp"
#include "windows/state/editor_windows.hpp"
#include "windows/state/form1.hpp"

namespace twk::windows {
namespace {

class LogonHoursTest : public test::TestWorld {
 protected:
  LogonHoursTest() {
    session.form1.savetemplate.enabled = true;
    set("Preferences", "LogonHoursZone", "UTC+12");
  }
  void deny(int from_row, int from_col, int to_row, int to_col) {
    window.Option1.index = 1;
    select_cells(session, from_row, from_col, to_row, to_col);
  }
  [[nodiscard]] std::vector<std::string> shown() const {
    return directory::text_of_cells(window.MSFlexGrid1);
  }
  windows::Logon_Hours& window = session.logon_hours;
};

TEST_F(LogonHoursTest, EachCellHasItsBit) {
  for (int row = 1; row <= directory::kDays; ++row) {
    for (int col = 1; col <= directory::kHours; ++col) {
      const int position = ((row - 1) * 24 + col - 13 + 168) % 168;
      base::Bytes bytes(21, 0);
      bytes[static_cast<std::size_t>(position / 8)] = static_cast<unsigned char>(1 << position % 8);
      const std::vector<bool> cells = directory::cells_of_bytes(bytes);
      EXPECT_EQ(std::count(cells.begin(), cells.end(), true), 1);
      EXPECT_TRUE(cells[static_cast<std::size_t>((row - 1) * 24 + col - 1)]) << row << " " << col;
      EXPECT_EQ(directory::bytes_of_cells(cells), bytes);
    }
  }
}

TEST_F(LogonHoursTest, WhatIsDeniedIsStoredWithOk) {
  struct Case {
    int row;
    int col;
    std::size_t byte;
    int value;
  };
  for (const Case& one : {Case{1, 13, 0, 1}, Case{7, 24, 19, 8}, Case{1, 12, 20, 128}}) {
    session.TemplateLogonHours.assign(21, 255);
    Logon_Hours_Load(session);
    EXPECT_EQ(shown(), std::vector<std::string>(7, std::string(24, '#')));
    deny(one.row, one.col, one.row, one.col);
    EXPECT_EQ(session.TemplateLogonHours, base::Bytes(21, 255)) << "not before OK";
    Logon_Hours_Command2_Click(session);
    base::Bytes wanted(21, 255);
    wanted[one.byte] = static_cast<unsigned char>(255 - one.value);
    EXPECT_EQ(session.TemplateLogonHours, wanted);
  }
}

TEST_F(LogonHoursTest, ARectangleIsPaintedFromAnyCornerAndNamed) {
  Logon_Hours_Load(session);
  deny(3, 24, 2, 20);
  EXPECT_EQ(window.Label2.caption.get(), "Monday through to Tuesday - 7pm to 12am");
  EXPECT_EQ(shown()[0], std::string(24, '#'));
  EXPECT_EQ(shown()[1], std::string(19, '#') + ".....");
  EXPECT_EQ(shown()[2], shown()[1]);
  window.Option1.index = 0;
  select_cells(session, 2, 24, 2, 24);
  EXPECT_EQ(window.Label2.caption.get(), "Monday - 11pm to 12am");
  EXPECT_EQ(shown()[1], std::string(19, '#') + "....#");
  show_selected(session, 7, 1, 7, 13);
  EXPECT_EQ(window.Label2.caption.get(), "Saturday - 12am to 1pm");
  EXPECT_EQ(shown()[6], std::string(24, '#')) << "showing paints nothing";
  deny(-5, 0, 99, 99);
  EXPECT_EQ(shown(), std::vector<std::string>(7, std::string(24, '.')));
}

TEST_F(LogonHoursTest, ATemplateThatIsNotEditedCanOnlyBeViewed) {
  session.form1.savetemplate.enabled = false;
  dialogs.on_modal = [this](std::string_view shown_window) {
    EXPECT_EQ(shown_window, "Logon_Hours");
    EXPECT_FALSE(window.Command2.enabled.get());
    EXPECT_NE(window.hint.caption.get(), "");
    deny(1, 1, 7, 24);
    Logon_Hours_Command2_Click(session);
  };
  LogonHours_Click(session);
  EXPECT_EQ(session.TemplateLogonHours, base::Bytes(21, 255));
}

TEST_F(LogonHoursTest, TextReadsBackAsItWasWritten) {
  base::Bytes bytes(21, 0);
  for (std::size_t i = 0; i < bytes.size(); ++i)
    bytes[i] = static_cast<unsigned char>(i * 37 + 5);
  const directory::HoursText read =
      directory::parse_hours(directory::text_of_cells(directory::cells_of_bytes(bytes)));
  EXPECT_EQ(read.error, "");
  EXPECT_EQ(directory::bytes_of_cells(read.cells), bytes);
}

TEST_F(LogonHoursTest, TextMayNameTheDaysAndUseOtherMarks) {
  std::vector<std::string> lines(7, std::string(24, '-'));
  lines[0] = "sunday: XXXX xxxx ........ 11110000";
  lines[1] = "Mon\t" + std::string(24, '0');
  lines[2] = std::string(24, 'X');
  lines.insert(lines.begin() + 2, "   ");
  const directory::HoursText read = directory::parse_hours(lines);
  EXPECT_EQ(read.error, "");
  EXPECT_EQ(directory::text_of_cells(read.cells)[0], "########........####....");
  EXPECT_EQ(directory::text_of_cells(read.cells)[2], std::string(24, '#'));
}

TEST_F(LogonHoursTest, WrongTextIsNamedByLineAndColumn) {
  struct Case {
    std::size_t line;
    std::string text;
    std::string error;
  };
  const std::string hours(24, '#');
  const Case cases[] = {{0, hours.substr(1), "line 1: 23 hours instead of 24"},
                        {1, hours + "#", "line 2, column 25: more than 24 hours"},
                        {2, "Tue ##?" + hours, "line 3, column 7: not one of"},
                        {3, "\u00E9" + hours, "line 4, column 1: not one of"},
                        {4, "Sun " + hours, "line 5, column 1: this line is for Thursday"},
                        {6, "", "line 8: 6 days instead of seven"}};
  for (const Case& one : cases) {
    std::vector<std::string> lines(7, hours);
    lines[one.line] = one.text;
    const directory::HoursText read = directory::parse_hours(lines);
    EXPECT_TRUE(read.cells.empty());
    EXPECT_EQ(read.error.substr(0, one.error.size()), one.error);
  }
  EXPECT_EQ(directory::parse_hours(std::vector<std::string>(8, hours)).error, "line 8: more than seven days");
}

}  // namespace
}  // namespace twk::windows
