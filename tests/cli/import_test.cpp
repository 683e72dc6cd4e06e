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

TEST_F(ImportingUsers, PrintsARowForEachLineAndTheCounts) {
  play(R"(
$ user import $FILE $STAFF => 1
{"line": 1, "user": "John.Smith", "light": "GREEN", "message": "John.Smith Created User", "warnings": []}
{"message": "The line has fewer than two fields", "warnings": ["The line has fewer than two fields"]}
{"user": "Jürgen.Müller"}
{"light": "RED"}
{"created": 2, "refused": 2, "importErr": "$LAB/db/Import.err"}
)",
       {{"$FILE", {file("new.csv", "John,Fred,Smith\r\n\r\nJ\xFCrgen,,M\xFCller\r\nAl,*,B*\r\n")}}});
  EXPECT_THAT(get_file(database_file("Import.err")), HasSubstr("The following users were not created."));
}

// The template's group was given by the line already.
TEST_F(ImportingUsers, TakesColumnsGroupsAndExpiryAsChosen) {
  play(R"(
$ user import $FILE $STAFF --first 3 --middle 0 --last 4 --id 1 --password 2 --groups 5-5
  --expires %IMPORT6% --description "of %IMPORT5%"
{"user": "x1"}
{"created": 1}
$ user show x1
{"fullName": "Al Bo", "expires": "2027-12-31", "description": "of staff"}
$ settings get Setup ImportGroupsFinish => 2
)",
       {{"$FILE", {file("new.csv", "x1,Secret-Word-9,Al,Bo,staff,31/12/2027\n")}}});
}

TEST_F(ImportingUsers, ShowsNobodysPassword) {
  play(R"(
$ settings set Setup BatchFileCreate "/nowhere %IMPORT4%"
$ settings set UM RunCmd Yes
$ user import $FILE $STAFF --password 4 => 1
| /nowhere ********
- Secret-Word-9
$ log show
- Secret-Word-9
)",
       {{"$FILE", {file("new.csv", "Al,,Bo,Secret-Word-9\n")}}});
}

TEST_F(ImportingUsers, HaltsAtTheFirstWarningWhenAsked) {
  play(R"(
$ user import $FILE $STAFF --halt-on-warnings => 2 Errors during Import
| John.Smith1
- Al.Bo
)",
       {{"$FILE", {file("new.csv", "John,,Smith\nJohn,,Smith\nAl,,Bo\n")}}});
}

TEST_F(ImportingUsers, ShowsInAPreviewWhatTheImportReportsAndWritesNothing) {
  for (const std::string stage : {"CreateDirs", "CreateShares", "SetPermissions", "MailAccount"})
    ASSERT_EQ(run({"settings", "set", "UM", stage, "No"}).exit_code, 0);
  play(
      "$ user create --template Staff --site 'Head Office' --ou OU=London,DC=twk,DC=test --id elsewhere El "
      "Se");
  const std::string log = get_file(database_file("Log.txt"));
  const std::string csv =
      "ann,,lee,annlee,Secret-Word-1,Staff,31/12/2030\n"
      "ann,,lee,annlee,Secret-Word-1\n"
      "kim,,day,annl,Secret-Word-1\n"
      "kim,,day,elsewhere,Secret-Word-1\n"
      "narrow,line\n"
      "alone\n"
      "al,,bo,b*,Secret-Word-1\n"
      "ada,,may,ada,Secret-Word-1,No Such Group\n"
      "eva,,may,eva,Secret-Word-1,Domain Users,31/02/2030\n"
      "no,,word,nopass\n";
  const Arguments columns = {"--id", "4", "--password", "5", "--groups", "6-6", "--expires", "%IMPORT7%"};
  Arguments preview = columns;
  preview.emplace_back("--preview");
  const ProgramResult seen = import(csv, preview);
  EXPECT_EQ(get_file(database_file("Log.txt")), log);
  EXPECT_FALSE(std::filesystem::exists(database_file("Import.err")));
  EXPECT_EQ(seen.exit_code, 2);
  const auto shown = json_lines(seen.out);
  const auto made = json_lines(import(csv, columns).out);
  ASSERT_EQ(shown.size(), 10U) << seen.err;
  ASSERT_EQ(made.size(), 11U);
  std::string lights;
  for (std::size_t i = 0; i < shown.size(); ++i) {
    lights += shown[i]["light"].get<std::string>().substr(0, 1);
    for (const char* const key : {"user", "light", "warnings"})
      EXPECT_EQ(shown[i][key], made[i][key]) << i << " " << key;
  }
  EXPECT_EQ(lights, "GYGRRRRYYY");
}

TEST_F(ImportingUsers, RefusesWhatHoldsNoLineAndAColumnThatNoLineHas) {
  ASSERT_EQ(import("John,,Smith\nalone\nJohn,,Smith,4\n").exit_code, 1);
  const std::string errors = database_file("Import.err");
  play(R"(
$ user import /dev/null $STAFF => 65 /dev/null is not an ordinary file
$ user import $EMPTY $STAFF => 65 contains no user
$ user import gone.csv $STAFF => 65 There is no file gone.csv
$ user import $ERRORS $STAFF --last 5 => 64 no column 5: the longest line has 1
)",
       {{"$EMPTY", {file("empty.csv", "")}}, {"$ERRORS", {errors}}});
  EXPECT_THAT(get_file(errors), testing::EndsWith("alone\r\n"));
}

TEST_F(ImportingUsers, StopsAfterTheCurrentUserAtCtrlC) {
  const ProgramResult result = run({"user", "import", file("many.csv", new_people(200)), "--template",
                                    "Staff", "--site", "Head Office", "--ou", kNewStarters},
                                   "\x03", at_terminal());
  EXPECT_EQ(result.exit_code, 1) << result.out;
  EXPECT_THAT(result.out,
              AllOf(HasSubstr("1     GREEN"), HasSubstr(" not created, stopped."), Not(HasSubstr("\n200 "))));
}

}  // namespace
}  // namespace twk::test
