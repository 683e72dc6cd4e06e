#include "cli/twk_fixture.hpp"

namespace twk::test {
namespace {

using testing::HasSubstr;
using testing::Not;

using Editors = TwkLab;

const std::string kNights = "########................";

std::string week(const std::string& monday) {
  std::string text;
  for (int day = 0; day < 7; ++day)
    text += (day == 1 ? monday : std::string(24, '#')) + "\n";
  return text;
}

TEST_F(Editors, HoursOfATemplateGoInAndComeBack) {
  ASSERT_EQ(run({"hours", "set", "staff"}, week("Mon: " + kNights)).exit_code, 0);
  const nlohmann::json hours = result_of({"hours", "show", "Staff"});
  EXPECT_EQ(hours["template"], "Staff");
  EXPECT_EQ(hours["hours"][1], kNights);
  const std::string shown = run({"hours", "show", "Staff"}).out;
  EXPECT_THAT(shown, HasSubstr("Monday    " + kNights + "\n"));
  ASSERT_EQ(run({"hours", "set", "Staff", file("all.txt", week(std::string(24, '1')))}).exit_code, 0);
  EXPECT_EQ(result_of({"template", "show", "Staff"})["logonHours"], std::string(42, 'F'));
  ASSERT_EQ(run({"hours", "set", "Staff"}, shown).exit_code, 0);
  EXPECT_EQ(run({"hours", "show", "Staff"}).out, shown);
}

TEST_F(Editors, HoursOfAnAccountGoInAndComeBack) {
  const ProgramResult made = create({"--ou", kNewStarters, "John", "Smith"});
  ASSERT_EQ(made.exit_code, 0) << made.err;
  ASSERT_EQ(run({"hours", "set", "--user", "john.smith"}, week(kNights)).exit_code, 0);
  EXPECT_EQ(result_of({"hours", "show", "--user", "John.Smith"})["hours"][1], kNights);
  ASSERT_EQ(
      run({"hours", "set", "--user", "john.smith", file("all.txt", week(std::string(24, 'X')))}).exit_code,
      0);
  EXPECT_EQ(result_of({"user", "show", "john.smith"})["logonHours"], std::string(42, 'F'));
  EXPECT_EQ(run({"hours", "show", "--user", "nobody"}).exit_code, 2);
}

TEST_F(Editors, HoursAreThoseOfTheZoneThatWasChosen) {
  const std::string late = std::string(7, '.') + std::string(11, '#') + "......";
  const auto in_berlin = [&](const Arguments& words) {
    ProgramRun how;
    how.environment = {{"TZ", "CET-1"}};
    return run(words, week(late), how);
  };
  // Where Monday's hours begin in the bytes, whose first bit is the first hour of Sunday in UTC.
  const auto stored = [&] {
    return result_of({"template", "show", "Staff"})["logonHours"].get<std::string>();
  };
  const std::string fixed = "FF0FF83FF0" + std::string(32, 'F');
  const std::string berlin = "FFFF7FC0FF81" + std::string(30, 'F');
  const ProgramResult unchosen = in_berlin({"hours", "set", "Staff"});
  EXPECT_EQ(unchosen.exit_code, 0);
  EXPECT_THAT(unchosen.err,
              HasSubstr("Monday 7am to 6pm, as hours of UTC+12, is Sunday 7pm to Monday 6am UTC; as "
                        "hours of UTC+1, the zone of this workstation, it is Monday 6am to 5pm UTC"));
  EXPECT_EQ(stored(), fixed);
  EXPECT_THAT(in_berlin({"hours", "set", "Staff", "--zone", "workstation"}).err, Not(HasSubstr("warning")));
  EXPECT_EQ(stored(), berlin);
  EXPECT_THAT(in_berlin({"hours", "zone"}).out, HasSubstr("UTC+12 (not chosen yet)"));
  EXPECT_THAT(in_berlin({"hours", "zone", "workstation"}).out,
              HasSubstr("UTC+1, the zone of this workstation"));
  EXPECT_THAT(in_berlin({"hours", "set", "Staff", "--zone", "UTC+12"}).err, Not(HasSubstr("warning")));
  EXPECT_EQ(stored(), fixed);
  EXPECT_THAT(in_berlin({"hours", "set", "Staff"}).err, Not(HasSubstr("warning")));
  EXPECT_EQ(stored(), berlin);
  EXPECT_THAT(in_berlin({"hours", "show", "Staff"}).out, HasSubstr("Monday    " + late));
  EXPECT_EQ(in_berlin({"hours", "zone", "here"}).exit_code, 64);
}

TEST_F(Editors, InvalidHoursAreNamedAndNothingIsChanged) {
  const std::string before = run({"hours", "show", "Staff"}).out;
  const ProgramResult result = run({"hours", "set", "Staff"}, week("####?" + std::string(19, '#')));
  EXPECT_EQ(result.exit_code, 65);
  EXPECT_THAT(result.err, HasSubstr("line 2, column 5"));
  EXPECT_EQ(run({"hours", "show", "Staff"}).out, before);
  EXPECT_EQ(run({"hours", "show"}).exit_code, 64);
  EXPECT_EQ(run({"hours", "show", "Staff", "--user", "x"}).exit_code, 64);
  EXPECT_EQ(run({"hours", "show", "Stuff"}).exit_code, 2);
}

TEST_F(Editors, ACustomFieldIsSetAndCleared) {
  EXPECT_EQ(run({"--json", "custom", "show"}).out, "");
  ASSERT_EQ(run({"custom", "set", "2", "Badge", "employeeNumber"}).exit_code, 0);
  EXPECT_EQ(result_of({"custom", "show"}),
            nlohmann::json({{"number", 2}, {"name", "Badge"}, {"attribute", "employeeNumber"}}));
  EXPECT_EQ(run({"custom", "set", "5", "Badge", "x"}).exit_code, 64);
  const ProgramResult without = run({"custom", "set", "1", "Room", " "});
  EXPECT_EQ(without.exit_code, 2);
  EXPECT_THAT(without.err, HasSubstr("has no attribute"));
  ASSERT_EQ(run({"custom", "clear", "2"}).exit_code, 0);
  EXPECT_EQ(run({"--json", "custom", "show"}).out, "");
}

}  // namespace
}  // namespace twk::test
