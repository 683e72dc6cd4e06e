#include "cli/twk_fixture.hpp"

namespace twk::test {
namespace {

using testing::HasSubstr;

class UserDetailsCommands : public TwkLab {
 protected:
  UserDetailsCommands() { EXPECT_EQ(create({"--ou", kNewStarters, "John", "Fred", "Smith"}).exit_code, 0); }
  [[nodiscard]] ProgramResult set(Arguments assignments) const {
    assignments.insert(assignments.begin(), {"user", "set", "John.Smith"});
    return run(assignments);
  }
  [[nodiscard]] nlohmann::json user() const { return result_of({"user", "show", "John.Smith"}); }
};

TEST_F(UserDetailsCommands, SetChangesTheFieldsThatAreNamed) {
  const ProgramResult result = set({"description=Manager = of all", "drive=K:", "home=\\\\FS1\\Users\\js",
                                    "script=", "logonName=js@twk.test", "expires=2026-12-31", "disabled=yes",
                                    "cantChange=yes", "mustChange=no"});
  EXPECT_EQ(result.exit_code, 0) << result.err;
  EXPECT_EQ(result.out, "GREEN  John.Smith: Saved...\n");
  const nlohmann::json after = user();
  EXPECT_EQ(after["description"], "Manager = of all");
  EXPECT_EQ(after["homeDrive"], "K:");
  EXPECT_EQ(after["homeDirectory"], "\\\\FS1\\Users\\js");
  EXPECT_EQ(after["loginScript"], "");
  EXPECT_EQ(after["userPrincipalName"], "js@twk.test");
  EXPECT_EQ(after["expires"], "2026-12-31");
  EXPECT_EQ(after["disabled"], true);
  EXPECT_EQ(after["cannotChangePassword"], true);
  EXPECT_EQ(after["mustChangePassword"], false);
  EXPECT_EQ(set({"expires=Never", "disabled=no"}).exit_code, 0);
  EXPECT_EQ(user()["expires"], nullptr);
}

TEST_F(UserDetailsCommands, SetTakesACustomAttributeByItsNameOrNumber) {
  ASSERT_EQ(run({"settings", "set", "Custom", "Custom1", "Staff number"}).exit_code, 0);
  ASSERT_EQ(run({"settings", "set", "Custom", "Property1", "employeeID"}).exit_code, 0);
  EXPECT_EQ(set({"staff NUMBER=47"}).exit_code, 0);
  EXPECT_THAT(run({"lab", "export"}).out, HasSubstr("employeeID: 47\n"));
  EXPECT_EQ(set({"custom1=48"}).exit_code, 0);
  EXPECT_THAT(run({"lab", "export"}).out, HasSubstr("employeeID: 48\n"));
  const ProgramResult refused = set({"custom1=" + std::string(17, '9'), "description=kept"});
  EXPECT_EQ(refused.exit_code, 1) << refused.out;
  EXPECT_THAT(refused.out, HasSubstr("Saved... but not employeeID: "));
  EXPECT_EQ(user()["description"], "kept");
  EXPECT_EQ(set({"custom2=48"}).exit_code, 2);
}

TEST_F(UserDetailsCommands, SetRefusesWhatNoFieldAcceptsAndWritesNothing) {
  const struct {
    Arguments assignments;
    int exit_code;
    const char* says;
  } cases[] = {{{"colour=red"}, 64, "no field \"colour\". Fields: fullName, description"},
               {{"description"}, 64, "is not FIELD=VALUE"},
               {{"expires=soon"}, 64, "31/12/2026"},
               {{"expires=1.2.30"}, 64, "before 1970"},
               {{"--expires-after", ""}, 64, "31/12/2026"},
               {{"--expires-after", "1/2/2030", "expires=never"}, 64, "give either"},
               {{"lockedOut=yes"}, 64, "cannot be locked out by hand"},
               {{"disabled=perhaps"}, 64, "takes yes or no"},
               {{"drive=h:"}, 2, ""}};
  for (const auto& [assignments, exit_code, says] : cases) {
    Arguments all = {"description=changed"};
    all.insert(all.end(), assignments.begin(), assignments.end());
    const ProgramResult result = set(all);
    EXPECT_EQ(result.exit_code, exit_code) << assignments.front() << result.err;
    EXPECT_THAT(result.err, HasSubstr(says));
    EXPECT_NE(user()["description"], "changed") << assignments.front();
  }
  EXPECT_EQ(set({"drive=h:"}).out, "RED  John.Smith: Home Drive Format Incorrect\n");
  EXPECT_EQ(run({"user", "set", "Nobody", "office=1"}).exit_code, 2);
}

TEST_F(UserDetailsCommands, GroupsAreListedAddedAndRemoved) {
  const ProgramResult listed = run({"--json", "user", "groups", "John.Smith"});
  ASSERT_EQ(listed.exit_code, 0) << listed.err;
  const auto rows = json_lines(listed.out);
  ASSERT_EQ(rows.size(), 2U) << listed.out;
  EXPECT_EQ(rows[0], nlohmann::json({{"name", "Domain Users"}, {"primary", true}}));
  EXPECT_EQ(rows[1], nlohmann::json({{"name", "Staff"}, {"primary", false}}));
  const ProgramResult changed =
      run({"user", "groups", "John.Smith", "--add", "domain guests", "--remove", "Staff"});
  EXPECT_EQ(changed.exit_code, 0) << changed.err;
  EXPECT_EQ(user()["groups"], nlohmann::json({"Domain Guests", "Domain Users"}));
}

TEST_F(UserDetailsCommands, GroupsThatCannotBeChangedAreReportedAndTheOthersAreKept) {
  const struct {
    Arguments options;
    int exit_code;
    const char* says;
  } cases[] = {{{"--add", "Staff"}, 2, "already in the group \"Staff\""},
               {{"--remove", "Domain Guests"}, 2, "not in the group"},
               {{"--add", "Domain Guests", "--add", "Stuff"}, 2, "no group \"Stuff\""},
               {{"--remove", "Domain Users"}, 2, "is the user's primary group"}};
  for (const auto& [options, exit_code, says] : cases) {
    Arguments all = {"user", "groups", "John.Smith"};
    all.insert(all.end(), options.begin(), options.end());
    const ProgramResult result = run(all);
    EXPECT_EQ(result.exit_code, exit_code) << result.err;
    EXPECT_THAT(result.err, HasSubstr(says));
    EXPECT_EQ(user()["groups"], nlohmann::json({"Domain Users", "Staff"})) << options.back();
  }
}

class NtUserDetailsCommands : public TwkLab {
 protected:
  static void SetUpTestSuite() { make("nt"); }
};

TEST_F(NtUserDetailsCommands, WorkInAWinNtDomainToo) {
  ASSERT_EQ(create({"John", "Fred", "Smith"}).exit_code, 0);
  const ProgramResult result =
      run({"user", "set", "John.Smith", "description=Manager", "expires=31/12/2026"});
  EXPECT_EQ(result.exit_code, 0) << result.err;
  EXPECT_EQ(run({"user", "groups", "John.Smith", "--remove", "Staff"}).exit_code, 0);
  const nlohmann::json user = result_of({"user", "show", "John.Smith"});
  EXPECT_EQ(user["description"], "Manager");
  EXPECT_EQ(user["expires"], "2026-12-31");
  EXPECT_EQ(user["groups"], nlohmann::json({"Domain Users"}));
  const ProgramResult refused = run({"user", "set", "John.Smith", "office=12"});
  EXPECT_EQ(refused.exit_code, 2);
  EXPECT_THAT(refused.err, HasSubstr("has no office"));
}

}  // namespace
}  // namespace twk::test
