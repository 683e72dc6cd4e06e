#include "directory/hours_zone.hpp"
#include "directory/hours_of_week.hpp"

#include "support/world.hpp"
#include "windows/editors/logon_hours.hpp"
#include "windows/state/editor_windows.hpp"
#include "windows/state/form1.hpp"

namespace twk::windows {
namespace {

using testing::HasSubstr;

/// A template being edited, on a workstation of some zone.
class HoursZoneTest : public test::TestWorld {
 protected:
  HoursZoneTest() { session.form1.savetemplate.enabled = true; }
  /// Monday 7am to 6pm and nothing else.
  void paint_monday() {
    Logon_Hours_Load(session);
    window.Option1.index = 1;
    select_cells(session, 1, 1, 7, 24);
    window.Option1.index = 0;
    select_cells(session, 2, 8, 2, 18);
  }
  /// The hours of the stored week at which UTC permits.
  [[nodiscard]] std::vector<bool> stored_utc() const {
    return directory::cells_of_bytes(session.TemplateLogonHours, 0);
  }
  static std::vector<bool> monday(int shift) {
    std::vector<bool> cells(168, false);
    for (int cell = 24 + 7; cell < 24 + 18; ++cell)
      cells[static_cast<std::size_t>((cell + shift + 168) % 168)] = true;
    return cells;
  }
  windows::Logon_Hours& window = session.logon_hours;
};

TEST_F(HoursZoneTest, EachZoneHasItsOffsetAndName) {
  const struct {
    int minutes;
    int ahead;
    const char* name;
    const char* readings;
    const char* note;
  } cases[] = {{60, 1, "UTC+1, the",
                "is Sunday 7pm to Monday 6am UTC; as hours of UTC+1, the zone of this workstation, it is "
                "Monday 6am to 5pm UTC",
                ""},
               {-480, -8, "UTC-8, the", "it is Monday 3pm to Tuesday 2am UTC", ""},
               {330, 5, "UTC+5:30, the", "it is Monday 2am to 1pm UTC", "30 minutes later"},
               {-210, -4, "UTC-3:30, the", "it is Monday 11am to 10pm UTC", "30 minutes later"},
               {720, 12, "UTC+12, the", "", ""},
               {0, 0, "UTC+0, the", "Monday 7am to 6pm, as hours of UTC+12, is", ""}};
  for (const auto& one : cases) {
    clock.seconds_ahead = one.minutes * 60;
    EXPECT_EQ(directory::hours_ahead(session.platform, directory::HoursZone::kWorkstation), one.ahead)
        << one.minutes;
    EXPECT_THAT(directory::zone_name(session.platform, directory::HoursZone::kWorkstation),
                HasSubstr(one.name));
    EXPECT_THAT(directory::two_readings(session.platform, monday(0)), HasSubstr(one.readings));
    EXPECT_EQ(directory::two_readings(session.platform, monday(0)).empty(), one.ahead == 12);
    EXPECT_THAT(directory::zone_note(session.platform, directory::HoursZone::kWorkstation),
                HasSubstr(one.note));
    for (const bool all : {true, false})
      EXPECT_EQ(directory::two_readings(session.platform, std::vector<bool>(168, all)), "");
  }
  EXPECT_EQ(directory::hours_ahead(session.platform, directory::HoursZone::kFixed), 12);
}

TEST_F(HoursZoneTest, TheFirstOkAsksForTheZoneAndKeepsTheAnswer) {
  const struct {
    platform::Answer answer;
    int shift;
    const char* kept;
  } cases[] = {{platform::Answer::kYes, -1, "Workstation"}, {platform::Answer::kNo, -12, "UTC+12"}};
  for (const auto& one : cases) {
    clock.seconds_ahead = 3600;
    set("Preferences", "LogonHoursZone", "");
    session.TemplateLogonHours.assign(21, 255);
    paint_monday();
    dialogs.expect("Monday 7am to 6pm, as hours of UTC+12", platform::Answer::kCancel);
    EXPECT_FALSE(Logon_Hours_Command2_Click(session));
    EXPECT_EQ(session.TemplateLogonHours, base::Bytes(21, 255)) << "no answer, nothing stored";
    dialogs.expect("Are these hours of this workstation's zone?", one.answer);
    EXPECT_TRUE(Logon_Hours_Command2_Click(session));
    EXPECT_EQ(stored_utc(), monday(one.shift));
    EXPECT_EQ(setting("Preferences", "LogonHoursZone"), one.kept);
    paint_monday();
    EXPECT_TRUE(Logon_Hours_Command2_Click(session)) << "not asked twice";
    EXPECT_EQ(stored_utc(), monday(one.shift));
  }
}

TEST_F(HoursZoneTest, AnotherZoneMovesWhatIsShownAndNotWhatIsStored) {
  clock.seconds_ahead = -8 * 3600;
  paint_monday();
  window.Zone.index = 1;
  Zone_Click(session);
  EXPECT_EQ(setting("Preferences", "LogonHoursZone"), "Workstation");
  EXPECT_EQ(window.MSFlexGrid1.get(), monday(-20));
  EXPECT_NE(window.zone_note.caption.get(), "");
  EXPECT_TRUE(Logon_Hours_Command2_Click(session));
  EXPECT_EQ(stored_utc(), monday(-12));
  Logon_Hours_Load(session);
  EXPECT_EQ(window.Zone.index.get(), 1);
  EXPECT_EQ(window.MSFlexGrid1.get(), monday(-20));
}

}  // namespace
}  // namespace twk::windows
