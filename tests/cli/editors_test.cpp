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

TEST_F(Editors, HoursOfATemplateAndOfAnAccountGoInAndComeBack) {
  play("$ user create $STAFF John Smith");
  for (const auto& [owner, record] : std::map<std::string, std::string>{
           {"staff", "template show Staff"}, {"--user=john.smith", "user show john.smith"}}) {
    const Meanings meanings = {{"$OWNER", {owner}},
                               {"$NIGHTS", {file("nights.txt", week("Mon: " + kNights))}},
                               {"$ALL", {file("all.txt", week(std::string(24, '1')))}}};
    play("$ hours set $OWNER $NIGHTS", meanings);
    const std::string shown = run({"hours", "show", owner}).out;
    EXPECT_THAT(shown, HasSubstr("Monday    " + kNights + "\n"));
    play("$ hours set $OWNER $ALL\n$ " + record + "\n{\"logonHours\": \"" + std::string(42, 'F') + "\"}",
         meanings);
    EXPECT_EQ(run({"hours", "set", owner}, shown).exit_code, 0);
    EXPECT_EQ(run({"hours", "show", owner}).out, shown);
  }
}

TEST_F(Editors, RehearsedHoursStayAsTheyWere) {
  play(R"(
$ user create $STAFF John Smith
$ hours set staff $NIGHTS --dry-run
> Replace the logon hours of the template Staff
$ hours set --user=john.smith $NIGHTS --dry-run
| Set on LDAP://twk.test/CN=John.Smith,$NEW: LoginHours
$ hours show staff
- $NIGHT_HOURS
$ hours show --user john.smith
- $NIGHT_HOURS
)",
       {{"$NIGHTS", {file("nights.txt", week(kNights))}}, {"$NIGHT_HOURS", {kNights}}});
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
  play(R"(
$ hours set Staff $HOURS => 65 line 2, column 5
$ hours show => 64
$ hours show Staff --user x => 64
$ hours show Stuff => 2
$ hours show --user nobody => 2
)",
       {{"$HOURS", {file("hours.txt", week("####?" + std::string(19, '#')))}}});
  EXPECT_EQ(run({"hours", "show", "Staff"}).out, before);
}

TEST_F(Editors, ACustomFieldIsSetAndCleared) {
  play(R"(
$ --json custom show
>
$ custom set 2 Badge employeeNumber
$ custom show
{"number": 2, "name": "Badge", "attribute": "employeeNumber"}
$ custom set 5 Badge x => 64
$ custom set 1 Room " " => 2 has no attribute
$ custom clear 2
$ --json custom show
>
)");
}

}  // namespace
}  // namespace twk::test
