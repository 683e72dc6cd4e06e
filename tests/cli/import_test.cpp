#include "cli/twk_fixture.hpp"

namespace twk::test {
namespace {

using testing::AllOf;
using testing::HasSubstr;
using testing::Not;

class ImportingUsers : public TwkLab {
 protected:
  [[nodiscard]] ProgramResult import(std::string_view csv, const Arguments& further = {}) const {
    Arguments arguments = {"--json", "user",        "import", file("new.csv", csv), "--template", "staff",
                           "--site", "head office", "--ou",   kNewStarters};
    arguments.insert(arguments.end(), further.begin(), further.end());
    return run(arguments);
  }
};

TEST_F(ImportingUsers, GivesARowALineAndTheCounts) {
  const ProgramResult result = import("John,Fred,Smith\r\n\r\nJ\xFCrgen,,M\xFCller\r\nAl,*,B*\r\n");
  EXPECT_EQ(result.exit_code, 1) << result.err;
  const auto lines = json_lines(result.out);
  ASSERT_EQ(lines.size(), 5U);
  EXPECT_EQ(lines[0], nlohmann::json({{"line", 1},
                                      {"user", "John.Smith"},
                                      {"light", "GREEN"},
                                      {"message", "John.Smith Created User"},
                                      {"warnings", nlohmann::json::array()}}));
  EXPECT_EQ(lines[1]["message"], "The line has fewer than two fields");
  EXPECT_EQ(lines[2]["user"], "Jürgen.Müller");
  EXPECT_EQ(lines[3]["light"], "RED");
  EXPECT_EQ(lines[4]["created"], 2);
  EXPECT_EQ(lines[4]["refused"], 2);
  EXPECT_THAT(get_file(lines[4]["importErr"]), HasSubstr("The following users were not created."));
  EXPECT_THAT(get_file(lines[4]["summary"]), HasSubstr("John Smith,John.Smith,John.Smith@twk.test,No\r\n"));
}

TEST_F(ImportingUsers, TakesColumnsGroupsAndExpiryAsChosen) {
  const ProgramResult result = import("x1,Secret-Word-9,Al,Bo,staff,31/12/2027\n",
                                      {"--first", "3", "--middle", "0", "--last", "4", "--id", "1",
                                       "--password", "2", "--groups", "5-5", "--expires", "%IMPORT6%"});
  EXPECT_EQ(json_lines(result.out).at(0)["user"], "x1") << result.err;
  const nlohmann::json user = result_of({"user", "show", "x1"});
  EXPECT_EQ(user["fullName"], "Al Bo");
  EXPECT_EQ(user["expires"], "2027-12-31");
  EXPECT_THAT(run({"log", "show"}).out, HasSubstr("Error adding user to group: Staff"))
      << "the template's group was given by the line already";
  EXPECT_EQ(run({"settings", "get", "Setup", "ImportGroupsFinish"}).exit_code, 2) << "a choice for one run";
}

TEST_F(ImportingUsers, HaltsAtTheFirstWarningWhenAsked) {
  const ProgramResult result = import("John,,Smith\nJohn,,Smith\nAl,,Bo\n", {"--halt-on-warnings"});
  EXPECT_EQ(result.exit_code, 2);
  EXPECT_THAT(result.err, HasSubstr("Errors during Import"));
  EXPECT_THAT(result.out, AllOf(HasSubstr("John.Smith1"), Not(HasSubstr("Al.Bo"))));
}

TEST_F(ImportingUsers, ShowsInAPreviewWhatWouldBeAndWritesNothing) {
  const ProgramResult result = import("John,,Smith\nJohn,,Smith\nAl,,B*\nalone\n", {"--preview"});
  EXPECT_EQ(result.exit_code, 2);
  std::string lights;
  for (const nlohmann::json& row : json_lines(result.out))
    lights += row["light"].get<std::string>() + " ";
  EXPECT_EQ(lights, "GREEN YELLOW RED RED ");
  EXPECT_FALSE(std::filesystem::exists(database_file("Import.err")));
  EXPECT_EQ(run({"user", "show", "John.Smith"}).exit_code, 2);
}

TEST_F(ImportingUsers, ShowsInAPreviewTheNamesThatTheImportGives) {
  const std::string csv = "ann,,lee,one\nkim,,day\n";
  ASSERT_EQ(run({"settings", "set", "Setup", "SetupID", "%first%%IMPORT4%"}).exit_code, 0);
  const auto shown = json_lines(import(csv, {"--preview"}).out);
  const auto made = json_lines(import(csv).out);
  ASSERT_GE(shown.size(), 2U);
  ASSERT_GE(made.size(), 2U);
  EXPECT_EQ(made[0]["user"], "Annone");
  EXPECT_EQ(made[1]["user"], "Kimone");
  for (std::size_t i = 0; i < 2; ++i)
    EXPECT_EQ(shown[i]["user"], made[i]["user"]);
}

TEST_F(ImportingUsers, RefusesAColumnThatTheFileDoesNotHave) {
  const ProgramResult result = import("John,,Smith\n", {"--id", "4"});
  EXPECT_EQ(result.exit_code, 64);
  EXPECT_THAT(result.err, HasSubstr("no column 4: the first line has 3"));
}

TEST_F(ImportingUsers, StopsAfterTheUserInHandAtCtrlC) {
  std::string csv;
  for (int i = 0; i < 200; ++i)
    csv += "First,,Last" + std::to_string(i) + "\n";
  ProgramRun how;
  how.terminal = true;
  how.environment = {{"TERM", "dumb"}};
  const ProgramResult result = run({"user", "import", file("many.csv", csv), "--template", "Staff", "--site",
                                    "Head Office", "--ou", kNewStarters},
                                   "\x03", how);
  EXPECT_EQ(result.exit_code, 1) << result.out;
  EXPECT_THAT(result.out, AllOf(HasSubstr("1     GREEN"), HasSubstr(" created, "), Not(HasSubstr("\n200 "))));
}

}  // namespace
}  // namespace twk::test
