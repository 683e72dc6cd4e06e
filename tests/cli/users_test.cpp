#include <gmock/gmock.h>

#include <filesystem>

#include "cli/twk_fixture.hpp"

namespace twk::test {
namespace {

using testing::ElementsAre;
using testing::HasSubstr;

/// Jo Smith, Ann Lee and Kim Day in a separate unit; Jo and Ann are in the group "Staff".
class ManyUsers : public TwkLab {
 protected:
  ManyUsers() {
    for (const auto& [first, last] : {std::pair{"Jo", "Smith"}, {"Ann", "Lee"}, {"Kim", "Day"}})
      EXPECT_EQ(create({"--ou", kNewStarters, first, last}).exit_code, 0);
  }
  [[nodiscard]] bool disabled(const std::string& name) const {
    return result_of({"user", "show", name})["disabled"].get<bool>();
  }
  /// The rows of a run, "GREEN Jo.Smith", and the counts of its end.
  struct Told {
    int exit_code = 0;
    std::vector<std::string> rows;
    nlohmann::json end;
    std::string err;
  };
  [[nodiscard]] Told tell(Arguments arguments, const std::string& input = {}) const {
    arguments.insert(arguments.begin(), {"--json", "users"});
    const ProgramResult result = run(arguments, input);
    Told told;
    told.exit_code = result.exit_code;
    told.err = result.err;
    auto lines = json_lines(result.out);
    if (!lines.empty()) {
      told.end = lines.back();
      lines.pop_back();
    }
    for (const auto& line : lines)
      told.rows.push_back(line["light"].get<std::string>() + " " + line["user"].get<std::string>());
    return told;
  }
};

TEST_F(ManyUsers, NamesGroupsUnitsAndFilesMakeOneSelection) {
  EXPECT_EQ(run({"user", "groups", "Kim.Day", "--remove", "Staff"}).exit_code, 0);
  const std::string list = file("names.txt", "# the leavers\r\n\r\n  Ann.Lee  \r\nJo.Smith\r\n");
  const Told told = tell({"disable", "Jo.Smith", "--from-file", list});
  EXPECT_EQ(told.exit_code, 0) << told.err;
  EXPECT_THAT(told.rows, ElementsAre("GREEN Jo.Smith", "GREEN Ann.Lee"));
  EXPECT_EQ(told.end["done"], 2);
  EXPECT_TRUE(disabled("Ann.Lee"));
  EXPECT_FALSE(disabled("Kim.Day"));
  EXPECT_THAT(tell({"enable", "--group", "Staff"}).rows,
              testing::UnorderedElementsAre("GREEN Jo.Smith", "GREEN Ann.Lee"));
  EXPECT_FALSE(disabled("Ann.Lee"));
  EXPECT_EQ(tell({"disable", "--ou", kNewStarters, "--group", "Staff"}).end["done"], 5);
  EXPECT_TRUE(disabled("Kim.Day"));
}

TEST_F(ManyUsers, AnUnknownNameIsReportedWithItsLineAndDoesNotStopTheRest) {
  const std::string list = file("names.txt", "Jo.Smith\nNobody\n*\nAnn.Lee");
  const Told told = tell({"disable", "--from-file", list, "--group", "No Such"});
  EXPECT_EQ(told.exit_code, 1);
  EXPECT_THAT(told.err, HasSubstr(list + ":2: There is no user \"Nobody\"."));
  EXPECT_THAT(told.err, HasSubstr(list + ":3: There is no user \"*\"."));
  EXPECT_THAT(told.err, HasSubstr("There is no group \"No Such\"."));
  EXPECT_THAT(told.rows, ElementsAre("GREEN Jo.Smith", "GREEN Ann.Lee"));
  EXPECT_EQ(told.end["unknown"], 3);
  EXPECT_EQ(tell({"disable", "--from-file", "-"}, "Kim.Day\n").exit_code, 0);
  EXPECT_TRUE(disabled("Kim.Day"));
  EXPECT_EQ(tell({"disable", "Nobody"}).exit_code, 2);
  const std::string broken = file("broken.txt", std::string("Jo\0Smith\n", 9));
  EXPECT_THAT(tell({"disable", "--from-file", broken}).err,
              HasSubstr(broken + ":1: A name holds the control character U+0000."));
}

TEST_F(ManyUsers, UsersMustBeNamed) {
  EXPECT_EQ(run({"users", "disable"}).exit_code, 64);
  EXPECT_EQ(run({"users", "disable", "--from-file", "/no/such/file"}).exit_code, 65);
  EXPECT_EQ(run({"users", "delete", "Jo.Smith"}).exit_code, 64);
  EXPECT_EQ(run({"users", "unlock", "Jo.Smith", "--password-stdin"}, "x\n").exit_code, 64);
  const ProgramResult nobody =
      run({"users", "delete", "--from-file", file("none", "# all gone\n"), "--account"});
  EXPECT_EQ(nobody.exit_code, 1);
  EXPECT_THAT(nobody.err, HasSubstr("none contains no names"));
  EXPECT_EQ(run({"group", "create", "Empty"}).exit_code, 0);
  EXPECT_THAT(tell({"delete", "--group", "Empty", "--account"}).err, HasSubstr("the selection is empty"));
  EXPECT_EQ(run({"users", "delete", "[Jo.Smith,Kim.Day]", "--account", "--no-prompting"}).exit_code, 2);
  const Arguments mail = {"delete", "Jo.Smith", "--account", "--mail", "--no-prompting", "--exchange-server"};
  const auto on = [&](const char* server) {
    Arguments arguments = mail;
    arguments.emplace_back(server);
    return tell(arguments);
  };
  EXPECT_THAT(on("EX5").err, HasSubstr("There is no Exchange server of a site \"EX5\". Near: \"EX55\""));
  EXPECT_EQ(run({"user", "show", "Jo.Smith"}).exit_code, 0);
  EXPECT_EQ(on("ex55").exit_code, 0);
  EXPECT_EQ(run({"users", "find-expired", "--before", "soon"}).exit_code, 64);
}

TEST_F(ManyUsers, PasswordsAreSetToExpireOrNotAndReset) {
  EXPECT_EQ(tell({"password-never-expires", "Jo.Smith", "--change-at-logon"}).exit_code, 0);
  auto jo = result_of({"user", "show", "Jo.Smith"});
  EXPECT_EQ(jo["passwordNeverExpires"], true);
  EXPECT_EQ(jo["mustChangePassword"], true);
  EXPECT_EQ(tell({"password-expires", "Jo.Smith"}).exit_code, 0);
  EXPECT_EQ(result_of({"user", "show", "Jo.Smith"})["passwordNeverExpires"], false);
  EXPECT_EQ(tell({"reset-password", "Jo.Smith", "Ann.Lee", "--password-stdin"}, "Other-Words-77\n").exit_code,
            0);
  const Told refused = tell({"reset-password", "Jo.Smith", "--password-stdin"}, "x\n");
  EXPECT_EQ(refused.exit_code, 2);
  EXPECT_THAT(refused.rows, ElementsAre("RED Jo.Smith"));
  EXPECT_EQ(
      tell({"unlock", "Jo.Smith", "--reset-passwords", "--password-stdin"}, "Third-Words-99\n").exit_code, 0);
}

TEST_F(ManyUsers, ExpiredAccountsAreFound) {
  EXPECT_EQ(run({"user", "set", "Ann.Lee", "expires=31/12/2020"}).exit_code, 0);
  const ProgramResult found = run({"--json", "users", "find-expired", "--before", "2021-01-01"});
  EXPECT_EQ(found.exit_code, 0) << found.err;
  const auto lines = json_lines(found.out);
  ASSERT_EQ(lines.size(), 1U) << found.out;
  EXPECT_EQ(lines[0]["dn"], "CN=Ann.Lee," + kNewStarters);
  EXPECT_EQ(run({"users", "find-expired", "--before", "31/12/2020"}).out, "");
  EXPECT_EQ(run({"users", "find-locked"}).out, "");
}

TEST_F(ManyUsers, AreDeletedByGroupWithTheirFolders) {
  const Told told = tell({"delete", "--group", "Staff", "Jo.Smith", "--account", "--data", "--no-prompting"});
  EXPECT_EQ(told.exit_code, 0) << told.err;
  EXPECT_FALSE(std::filesystem::exists(lab() + "/servers/FS1/D/Users/Jo.Smith"));
  EXPECT_EQ(run({"user", "show", "Ann.Lee"}).exit_code, 2);
  EXPECT_EQ(told.end["failed"], 0);
  // A deleted account counts as done by every command, whatever remains of it.
  for (const std::string name : {"Eva", "Ada"}) {
    EXPECT_EQ(create({"--ou", kNewStarters, name, "Day"}).exit_code, 0);
    EXPECT_EQ(run({"user", "set", name + ".Day", R"(home=\\FS1\gone$)"}).exit_code, 0);
  }
  const Told kept = tell({"delete", "Eva.Day", "--account", "--data", "--no-prompting"});
  EXPECT_EQ(kept.exit_code, 1);
  EXPECT_THAT(kept.rows, ElementsAre("YELLOW Eva.Day"));
  EXPECT_EQ(kept.end["message"], "1 done, 1 of them with warnings, 0 failed, 0 unknown.");
  EXPECT_EQ(kept.end["warned"], 1);
  const ProgramResult one =
      run({"--json", "user", "delete", "Ada.Day", "--account", "--data", "--no-prompting"});
  EXPECT_EQ(one.exit_code, 1);
  EXPECT_EQ(json_lines(one.out).front()["done"], true);
  EXPECT_THAT(json_lines(one.out).front()["warnings"], testing::SizeIs(testing::Gt(0U)));
}

TEST_F(ManyUsers, ARehearsedDeletionChangesNothing) {
  const ProgramResult result = run({"users", "delete", "--ou", kNewStarters, "--account", "--dry-run"});
  EXPECT_EQ(result.exit_code, 0) << result.err;
  EXPECT_THAT(result.out, HasSubstr("Delete the account LDAP://twk.test/CN=Kim.Day," + kNewStarters));
  EXPECT_THAT(result.out, HasSubstr("3 rehearsed, 0 of them with warnings, 0 failed, 0 unknown."));
  EXPECT_EQ(run({"user", "show", "Kim.Day"}).exit_code, 0);
}

TEST_F(ManyUsers, AreMovedToASiteAndTemplate) {
  EXPECT_EQ(run({"site", "add", "Branch", "--nt-server", "FS1"}).exit_code, 0);
  const Told told = tell({"move", "--ou", kNewStarters, "--site", "Branch", "--template", "Staff", "--data",
                          "nothing", "--no-prompt"});
  EXPECT_EQ(told.exit_code, 0) << told.err;
  EXPECT_EQ(told.end["done"], 3);
}

TEST_F(ManyUsers, CtrlCStopsAfterTheCurrentUser) {
  std::string csv;
  for (int i = 0; i < 150; ++i)
    csv += "First,,Last" + std::to_string(i) + "\n";
  EXPECT_EQ(run({"user", "import", file("many.csv", csv), "--template", "Staff", "--site", "Head Office",
                 "--ou", kNewStarters})
                .exit_code,
            0);
  ProgramRun how;
  how.terminal = true;
  how.environment = {{"TERM", "dumb"}};
  const ProgramResult result = run({"users", "disable", "--ou", kNewStarters}, "\x03", how);
  EXPECT_EQ(result.exit_code, 1) << result.out;
  EXPECT_THAT(result.out, testing::AllOf(HasSubstr("GREEN"), HasSubstr(" 0 failed, 0 unknown, stopped."),
                                         testing::Not(HasSubstr("153 done"))));
}

class ManyUsersOfAnNtDomain : public TwkLab {
 protected:
  static void SetUpTestSuite() { make("nt"); }
};

TEST_F(ManyUsersOfAnNtDomain, AreDisabledByNameAndGroupAndFound) {
  for (const auto& [first, last] : {std::pair{"Jo", "Smith"}, {"Ann", "Lee"}})
    EXPECT_EQ(create({first, last}).exit_code, 0);
  const ProgramResult result = run({"--json", "users", "disable", "Jo.Smith", "Nobody", "--group", "Staff"});
  EXPECT_EQ(result.exit_code, 1);
  EXPECT_THAT(result.err, HasSubstr("There is no user \"Nobody\"."));
  EXPECT_EQ(result_of({"user", "show", "Ann.Lee"})["disabled"], true);
  EXPECT_EQ(run({"user", "set", "Ann.Lee", "expires=31/12/2020"}).exit_code, 0);
  EXPECT_THAT(run({"users", "find-expired", "--before", "1/1/2021"}).out, HasSubstr("Ann.Lee"));
  EXPECT_EQ(run({"users", "delete", "--group", "Staff", "--account", "--no-prompting"}).exit_code, 0);
  EXPECT_EQ(run({"user", "show", "Ann.Lee"}).exit_code, 2);
}

}  // namespace
}  // namespace twk::test
