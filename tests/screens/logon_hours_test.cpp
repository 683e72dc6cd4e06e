#include "windows/editors/logon_hours.hpp"
#include "directory/hours_of_week.hpp"

#include "screens/screen_test.hpp"
#include "screens/widgets/hours_grid.hpp"
#include "session/settings.hpp"
#include "windows/state/form1.hpp"

namespace twk::test {
namespace {

class LogonHoursWindowTest : public ScreenTest {
 protected:
  /// Opens the window on an edited template in which all hours are permitted.
  void show(std::function<void(QWidget& shown, screens::HoursGrid& grid)> person, bool editing = true) {
    lab.set("Preferences", "LogonHoursZone", "UTC+12");
    open();
    lab.session.form1.savetemplate.enabled = editing;
    expect_window([this, person](QWidget& shown) {
      auto* const grid = dynamic_cast<screens::HoursGrid*>(find<QTableView>("MSFlexGrid1", &shown));
      ASSERT_NE(grid, nullptr);
      person(shown, *grid);
    });
    windows::LogonHours_Click(lab.session);
  }
  static QPoint middle(const screens::HoursGrid& grid, int row, int col) {
    return grid.visualRect(grid.model()->index(row - 1, col - 1)).center();
  }
  static void drag(screens::HoursGrid& grid, QPoint from, QPoint to) {
    QTest::mousePress(grid.viewport(), Qt::LeftButton, {}, from);
    for (const QPoint& on_the_way : {(from + to) / 2, to}) {
      QMouseEvent move(QEvent::MouseMove, on_the_way, grid.viewport()->mapToGlobal(on_the_way), Qt::NoButton,
                       Qt::LeftButton, Qt::NoModifier);
      QApplication::sendEvent(grid.viewport(), &move);
    }
    QTest::mouseRelease(grid.viewport(), Qt::LeftButton, {}, to);
  }
  static void keys(screens::HoursGrid& grid, Qt::Key key, int times,
                   Qt::KeyboardModifiers modifiers = Qt::NoModifier) {
    for (int i = 0; i < times; ++i)
      QTest::keyClick(&grid, key, modifiers);
  }
  /// The stored hours as text.
  std::vector<std::string> stored() {
    return directory::text_of_cells(directory::cells_of_bytes(lab.session.TemplateLogonHours));
  }
  const std::string all = std::string(24, '#');
};

TEST_F(LogonHoursWindowTest, ARectangleAndACellAreDeniedWithTheMouse) {
  show([this](QWidget& shown, screens::HoursGrid& grid) {
    click("Option2", &shown);
    drag(grid, middle(grid, 3, 24), middle(grid, 2, 20));
    EXPECT_EQ(find<QLabel>("Label2", &shown)->text(), "Monday through to Tuesday - 7pm to 12am");
    QTest::mouseClick(grid.viewport(), Qt::LeftButton, {}, middle(grid, 1, 13));
    click("Command2", &shown);
  });
  const std::string noon = "############.###########";
  const std::string late = std::string(19, '#') + ".....";
  EXPECT_EQ(stored(), (std::vector<std::string>{noon, late, late, all, all, all, all}));
}

TEST_F(LogonHoursWindowTest, TheKeyboardSelectsAndPaints) {
  show([this](QWidget& shown, screens::HoursGrid& grid) {
    press("Option2", Qt::Key_Space, &shown);
    grid.setFocus();
    grid.setCurrentIndex(grid.model()->index(0, 0));
    keys(grid, Qt::Key_Down, 5);
    keys(grid, Qt::Key_Right, 2);
    keys(grid, Qt::Key_Down, 1, Qt::ShiftModifier);
    keys(grid, Qt::Key_Right, 3, Qt::ShiftModifier);
    EXPECT_EQ(find<QLabel>("Label2", &shown)->text(), "Friday through to Saturday - 2am to 6am");
    EXPECT_EQ(grid.model()->index(5, 2).data(Qt::AccessibleTextRole).toString(), "Friday 2am, permitted");
    QTest::keyClick(&grid, Qt::Key_Return);
    EXPECT_EQ(grid.model()->index(5, 2).data(Qt::AccessibleTextRole).toString(), "Friday 2am, denied");
    EXPECT_TRUE(shown.isVisible()) << "Enter paints here";
    click("Command2", &shown);
  });
  const std::string night = "##....##################";
  EXPECT_EQ(stored(), (std::vector<std::string>{all, all, all, all, all, night, night}));
}

TEST_F(LogonHoursWindowTest, AHeadingPaintsItsDayOrHourAndTheCornerAll) {
  show([this](QWidget& shown, screens::HoursGrid& grid) {
    click("Option2", &shown);
    click("All", &shown);
    click("Option1", &shown);
    QHeaderView* const days = grid.verticalHeader();
    QTest::mouseClick(days->viewport(), Qt::LeftButton, {}, {5, days->sectionViewportPosition(3) + 5});
    EXPECT_EQ(find<QLabel>("Label2", &shown)->text(), "Wednesday - 12am to 12am");
    QHeaderView* const hours = grid.horizontalHeader();
    QTest::mouseClick(hours->viewport(), Qt::LeftButton, {}, {hours->sectionViewportPosition(23) + 5, 5});
    click("Command2", &shown);
  });
  const std::string last = std::string(23, '.') + "#";
  EXPECT_EQ(stored(), (std::vector<std::string>{last, last, last, all, last, last, last}));
}

TEST_F(LogonHoursWindowTest, EscStoresNothing) {
  show([this](QWidget& shown, screens::HoursGrid&) {
    click("Option2", &shown);
    click("All", &shown);
    QTest::keyClick(&shown, Qt::Key_Escape);
  });
  EXPECT_EQ(lab.session.TemplateLogonHours, base::Bytes(21, 255));
}

TEST_F(LogonHoursWindowTest, ATemplateThatIsNotEditedHasNoOk) {
  show(
      [this](QWidget& shown, screens::HoursGrid&) {
        EXPECT_FALSE(find<QPushButton>("Command2", &shown)->isEnabled());
        EXPECT_TRUE(find<QLabel>("hint", &shown)->isVisible());
        EXPECT_FALSE(find<QLabel>("zone_note", &shown)->isVisible());
        click("Zone_1", &shown);
        EXPECT_TRUE(find<QLabel>("zone_note", &shown)->isVisible());
        QTest::keyClick(&shown, Qt::Key_Escape);
      },
      false);
}

}  // namespace
}  // namespace twk::test
