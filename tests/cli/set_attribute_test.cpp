#include <gmock/gmock.h>

#include "cli/twk_fixture.hpp"

namespace twk::test {
namespace {

using testing::AllOf;
using testing::ElementsAre;
using testing::HasSubstr;
using testing::Not;

/// Jo Smith and Ann Lee, who are members of Staff.
class SetAttribute : public TwkLab {
 protected:
  SetAttribute() {
    for (const Arguments& names : {Arguments{"Jo", "Smith"}, {"Ann", "Lee"}})
      EXPECT_EQ(create({"--ou", kNewStarters, names[0], names[1]}).exit_code, 0);
  }

  [[nodiscard]] ProgramResult set(Arguments arguments, const std::string& input = {}) const {
    arguments.insert(arguments.begin(), {"users", "set-attribute"});
    return run(arguments, input);
  }
  /// Each result as "LIGHT user", preceded by the line of a file, and the counts as the last one.
  [[nodiscard]] std::vector<std::string> rows_of(Arguments arguments, const std::string& input = {}) const {
    arguments.insert(arguments.begin(), {"--json", "users", "set-attribute"});
    std::vector<std::string> rows;
    for (const nlohmann::json& row : json_lines(run(arguments, input).out)) {
      const std::string line = row.contains("line") ? std::to_string(row["line"].get<int>()) + " " : "";
      const std::string what = row.contains("done") ? row["message"] : row["user"];
      rows.push_back(line + row["light"].get<std::string>() + " " + what);
    }
    return rows;
  }
  /// What the directory stores about a user, as LDIF.
  [[nodiscard]] std::string entry(const std::string& user) const {
    const std::string all = run({"lab", "export"}).out;
    const std::size_t at = all.find("dn: CN=" + user + ",");
    return at == std::string::npos ? "" : all.substr(at, all.find("\n\n", at) - at) + "\n";
  }
};

TEST_F(SetAttribute, SetsTheValueForNamedUsers) {
  EXPECT_THAT(rows_of({"title", "Clerk of %UserName%", "Jo.Smith", "Ann.Lee"}),
              ElementsAre("GREEN Jo.Smith", "GREEN Ann.Lee",
                          "GREEN 2 done, 0 of them with warnings, 0 failed, 0 unknown."));
  EXPECT_THAT(entry("Jo.Smith"), HasSubstr("title: Clerk of Jo.Smith\n"));
  EXPECT_THAT(entry("Ann.Lee"), HasSubstr("title: Clerk of Ann.Lee\n"));
  EXPECT_THAT(get_file(database_file("Log.txt")),
              HasSubstr("Change property:'title' to 'Clerk of Jo.Smith' for Jo.Smith"));
}

TEST_F(SetAttribute, ReachesUnitsAndFilesOfNames) {
  EXPECT_EQ(set({"title", "Clerk", "--ou", kNewStarters}).exit_code, 0);
  EXPECT_THAT(entry("Ann.Lee"), HasSubstr("title: Clerk\n"));
  EXPECT_THAT(rows_of({"title", "Head", "--from-file", "-"}, "Ann.Lee\n"),
              ElementsAre("GREEN Ann.Lee", "GREEN 1 done, 0 of them with warnings, 0 failed, 0 unknown."));
  EXPECT_THAT(entry("Ann.Lee"), HasSubstr("title: Head\n"));
  EXPECT_THAT(entry("Jo.Smith"), HasSubstr("title: Clerk\n"));
}

TEST_F(SetAttribute, ReplacesUnlessItIsToldToAppend) {
  EXPECT_EQ(set({"otherTelephone", "11", "Jo.Smith"}).exit_code, 0);
  EXPECT_EQ(set({"otherTelephone", "22", "Jo.Smith", "--append"}).exit_code, 0);
  EXPECT_THAT(entry("Jo.Smith"), AllOf(HasSubstr("otherTelephone: 11\n"), HasSubstr("otherTelephone: 22\n")));
  EXPECT_EQ(set({"otherTelephone", "33", "Jo.Smith", "--replace"}).exit_code, 0);
  EXPECT_THAT(entry("Jo.Smith"), AllOf(HasSubstr("otherTelephone: 33\n"), Not(HasSubstr("11\n"))));
  for (const char* const single : {"title", "WTSInitialProgram"}) {
    const ProgramResult refused = set({single, "x", "Jo.Smith", "--append"});
    EXPECT_EQ(refused.exit_code, 64);
    EXPECT_THAT(refused.err, HasSubstr("has a single value"));
  }
}

TEST_F(SetAttribute, ReportsWhoFailedAndContinues) {
  EXPECT_EQ(set({"title", "Clerk", "Jo.Smith", "Nobody", "Ann.Lee"}).exit_code, 1);
  EXPECT_THAT(entry("Ann.Lee"), HasSubstr("title: Clerk\n"));
  EXPECT_THAT(rows_of({"countryCode", "many", "Jo.Smith", "Ann.Lee"}),
              ElementsAre("RED Jo.Smith", "RED Ann.Lee",
                          "RED 0 done, 0 of them with warnings, 2 failed, 0 unknown."));
  EXPECT_EQ(set({"countryCode", "many", "Jo.Smith"}).exit_code, 2);
}

TEST_F(SetAttribute, RefusesAnUnknownPropertyWithTheNearOnes) {
  for (const auto& [name, near] : std::vector<std::pair<std::string, std::string>>{
           {"titel", "\"title\""}, {"WTSTimeoutIdl", "\"WTSTimeoutIdle\""}, {"member", "\"memberOf\""}}) {
    const ProgramResult refused = set({name, "Clerk", "Jo.Smith"});
    EXPECT_EQ(refused.exit_code, 2) << name;
    EXPECT_THAT(refused.err, AllOf(HasSubstr("\"" + name + "\""), HasSubstr(near)));
    EXPECT_EQ(refused.out, "");
  }
}

TEST_F(SetAttribute, RefusesValuesThatCannotBeBeforeAnythingIsChanged) {
  for (const Arguments& arguments : {Arguments{"title", "", "Jo.Smith"},
                                     {"WTSTimeoutIdle", "7 mins", "Jo.Smith"},
                                     {"WTSAllowLogonTerminalServer", "1", "Jo.Smith"},
                                     {"title", "Clerk"},
                                     {"title"},
                                     {"title", "--group", "Staff"},
                                     {"title", "--from-file", "a.csv", "--group", "Staff"},
                                     {"title", "--from-file", "a.csv", "--from-file", "b.csv"},
                                     {"otherTelephone", "1", "Jo.Smith", "--append", "--replace"}})
    EXPECT_EQ(set(arguments).exit_code, 64) << arguments.back();
}

TEST_F(SetAttribute, SetsTerminalServerSettings) {
  EXPECT_EQ(set({"wtstimeoutsettingsidle", "5 mins", "Jo.Smith"}).exit_code, 0);
  EXPECT_EQ(set({"WTSInitialProgram", "c:\\%UserName%.exe", "Jo.Smith"}).exit_code, 0);
  EXPECT_EQ(set({"WTSDeviceClientDrives", "no", "Jo.Smith"}).exit_code, 0);
  EXPECT_EQ(set({"WTSDeviceClientDefaultPrinter", "--from-file", "-"}, "Jo.Smith,FALSE\n").exit_code, 0);
  const nlohmann::json shown = result_of({"ts", "show", "Jo.Smith"});
  EXPECT_EQ(shown["idleLimit"], 300000);
  EXPECT_EQ(shown["program"], "c:\\Jo.Smith.exe");
  EXPECT_EQ(shown["drives"], false);
  EXPECT_EQ(shown["defaultPrinter"], false);
}

TEST_F(SetAttribute, FileSetsASeparateValueForEachUser) {
  const std::string path = file("titles.csv",
                                "Jo.Smith,\"Head, of \"\"it\"\"\"\r\nNobody,x\r\n\r\nann.lee\r\n"
                                "Ann.Lee,Fran\xE7ois\r\nAnn Lee,\r\n");
  EXPECT_THAT(rows_of({"title", "--from-file", path}),
              ElementsAre("1 GREEN Jo.Smith", "2 RED Nobody", "4 RED ann.lee", "5 GREEN Ann.Lee",
                          "6 RED Ann Lee", "RED 2 done, 0 of them with warnings, 1 failed, 2 unknown."));
  EXPECT_THAT(entry("Jo.Smith"), HasSubstr("title: \"Head, of \"\"it\"\"\"\n"));
  EXPECT_THAT(entry("Ann.Lee"), HasSubstr("title:: RnJhbsOnb2lz\n"));
  const std::string log = get_file(database_file("Log.txt"));
  EXPECT_THAT(log, HasSubstr("titles.csv, line 4: ann.lee: There is no comma after the name"));
  EXPECT_EQ(set({"title", "--from-file", "/nonexistent"}).exit_code, 65);
}

TEST_F(SetAttribute, FileOfTimesRefusesOtherWords) {
  EXPECT_THAT(rows_of({"WTSTimeoutIdle", "--from-file", "-"}, "Jo.Smith,7 mins\nAnn.Lee,10 mins\n"),
              ElementsAre("1 RED Jo.Smith", "2 GREEN Ann.Lee",
                          "RED 1 done, 0 of them with warnings, 1 failed, 0 unknown."));
  EXPECT_THAT(run({"ts", "show", "Ann.Lee"}).out, HasSubstr("10 mins"));
}

class SetAttributeInWinNt : public TwkLab {
 protected:
  static void SetUpTestSuite() { make("nt"); }
};

TEST_F(SetAttributeInWinNt, IsRefused) {
  const ProgramResult refused = run({"users", "set-attribute", "title", "Clerk", "Administrator"});
  EXPECT_EQ(refused.exit_code, 2);
  EXPECT_THAT(refused.err, HasSubstr("is not an Active Directory domain"));
}

}  // namespace
}  // namespace twk::test
