#include "cli/twk_fixture.hpp"

namespace twk::test {
namespace {

using testing::HasSubstr;

/// Jo Smith and Ann Lee, in the group "Staff".
class Plan : public TwkLab {
 protected:
  Plan() {
    play(R"(
$ user create $STAFF Jo Smith
$ user create $STAFF Ann Lee
)");
  }
  [[nodiscard]] std::string plan(std::string_view lines) const { return file("plan.twk", lines); }
  /// The record of the last run.
  [[nodiscard]] std::string record() const {
    for (const auto& entry : std::filesystem::directory_iterator(lab() + "/db")) {
      if (entry.path().filename().string().starts_with("Plan Record"))
        return entry.path().string();
    }
    return {};
  }
};

constexpr std::string_view kMoveUp = R"(# the move up

ou create "Year 2"
twk users move-ou "OU=Year 2,DC=twk,DC=test" --group Staff
users disable Jo.Smith
users groups --remove Staff Ann.Lee
)";

TEST_F(Plan, RunsItsLinesInOrderAndIsTakenBackByItsRecord) {
  const std::string file = plan(kMoveUp);
  play(R"(
$ plan run $PLAN --dry-run
| Make the organizational unit OU=Year 2
| Move LDAP://twk.test/CN=Jo.Smith,$NEW to LDAP://twk.test/OU=Year 2
| 4 of 4 commands rehearsed
$ plan run $PLAN
| 4: twk users move-ou
| GREEN  4 of 4 commands done
)",
       {{"$PLAN", {file}}});
  const nlohmann::json jo = result_of({"user", "show", "Jo.Smith"});
  EXPECT_EQ(jo["dn"], "CN=Jo.Smith,OU=Year 2,DC=twk,DC=test");
  EXPECT_EQ(jo["disabled"], true);
  play(R"(
$ plan undo $RECORD --dry-run => 1
| Move LDAP://CN=Jo.Smith,OU=Year 2
$ --no-input plan undo $RECORD => 2 4 changes of accounts
$ --yes plan undo $RECORD => 1 line 3 (GREEN) cannot be taken back: ou create "Year 2"
{"line": 6, "user": "Ann.Lee", "light": "GREEN"}
{"line": 5, "user": "Jo.Smith", "light": "GREEN"}
{"line": 4}
{"line": 4}
{"done": 4, "failed": 0}
$ user show Jo.Smith
{"dn": "CN=Jo.Smith,$NEW", "disabled": false}
$ user show Ann.Lee
{"groups": ["Domain Users", "Staff"]}
$ --yes plan undo $RECORD => 1 nothing of this plan is left
$ plan undo $PLAN => 65 is no record of a plan
)",
       {{"$RECORD", {record()}}, {"$PLAN", {file}}});
}

TEST_F(Plan, GivesFormerValuesBackUnlessSomebodyChangedThemSince) {
  const std::string file = plan(R"(users set-attribute department Sales Jo.Smith Ann.Lee
users set-attribute otherTelephone 22 --append Jo.Smith
users set-attribute WTSTimeoutIdle "30 mins" Ann.Lee
users move-ou "CN=Users,DC=twk,DC=test" Jo.Smith
)");
  play(R"(
$ users set-attribute otherTelephone 11 Jo.Smith
$ users set-attribute department Stores Jo.Smith
$ plan run $PLAN
$ users set-attribute department Elsewhere Ann.Lee
$ ou create Elsewhere
$ user move-ou Jo.Smith "OU=Elsewhere,DC=twk,DC=test"
)",
       {{"$PLAN", {file}}});
  play(R"(
$ --yes plan undo $RECORD => 2
{"line": 4, "light": "RED", "message": "Jo.Smith: the account is in OU=Elsewhere,DC=twk,DC=test, which is not what the run left: it stays"}
{"line": 3, "light": "RED", "message": "Ann.Lee: the former WTSTimeoutIdle is not known, because it cannot be read"}
{"line": 2, "light": "GREEN", "message": "Jo.Smith has the former otherTelephone again: \"11\""}
{"line": 1, "light": "RED", "message": "Ann.Lee: department is \"Elsewhere\", which is not what the run left: it stays"}
{"line": 1, "light": "GREEN"}
{"done": 2, "failed": 3}
$ user show Jo.Smith --attributes department,otherTelephone
{"department": "Stores", "otherTelephone": "11"}
)",
       {{"$RECORD", {record()}}});
}

TEST_F(Plan, ARehearsedLineFindsUnitsAndGroupsOfTheLinesBefore) {
  const std::string file = plan(R"(ou create School
ou create "OU=Year 7,OU=School,DC=twk,DC=test"
group create "Year 7"
users groups --add "Year 7" Jo.Smith
users move-ou "OU=Year 7,OU=School,DC=twk,DC=test" Jo.Smith
)");
  play(R"(
$ plan run $PLAN --dry-run
| Make the organizational unit OU=Year 7 in LDAP://OU=School,DC=twk,DC=test
| Make the group CN=Year 7 in
| Add LDAP://twk.test/CN=Jo.Smith,$NEW to the group LDAP://twk.test/CN=Year 7,CN=Users,DC=twk,DC=test
| Move LDAP://twk.test/CN=Jo.Smith,$NEW to LDAP://twk.test/OU=Year 7,OU=School,DC=twk,DC=test
| 5 of 5 commands rehearsed
$ group show "Year 7" => 2
$ plan run $PLAN
| 5 of 5 commands done
$ group show "Year 7"
{"members": ["Jo.Smith"]}
)",
       {{"$PLAN", {file}}});
}

TEST_F(Plan, ARehearsedLineOfALabFindsTheUsersOfTheLinesBefore) {
  const std::string file =
      plan(R"(user create --template Staff --site "Head Office" --ou "OU=New Starters,DC=twk,DC=test" Zoe Ray
user rename Zoe.Ray --logon Zoe.Day --full-name "Zoe Day"
user import )" +
           this->file("new.csv", "Kim,,Lee\n") +
           R"( --template Staff --site "Head Office" --ou "OU=New Starters,DC=twk,DC=test"
user reset-password Kim.Lee
ou create School
users move-ou "OU=School,DC=twk,DC=test" Zoe.Day Kim.Lee Jo.Smith
group create Choir
users groups --add Choir --remove Staff --ou "OU=School,DC=twk,DC=test"
users disable --group Choir --except Jo.Smith
users delete --account --no-prompting Kim.Lee
users enable Kim.Lee
)");
  play(R"(
$ plan run $PLAN --dry-run => 2 There is no user "Kim.Lee".
| Rename LDAP://twk.test/CN=Zoe.Ray,$NEW to CN=Zoe Day
| Move LDAP://twk.test/CN=Kim.Lee,$NEW to LDAP://twk.test/OU=School,DC=twk,DC=test
| Add LDAP://twk.test/CN=Zoe Day,OU=School,DC=twk,DC=test to the group
| Set on LDAP://twk.test/CN=Kim.Lee,OU=School,DC=twk,DC=test: userAccountControl
| Delete the account LDAP://twk.test/CN=Kim.Lee,OU=School,DC=twk,DC=test
| 11 of 11 commands rehearsed
$ user show Zoe.Day => 2
$ user show Jo.Smith
{"dn": "CN=Jo.Smith,$NEW", "groups": ["Domain Users", "Staff"]}
$ plan run $PLAN => 2 There is no user "Kim.Lee".
| 11 of 11 commands done
$ group show Choir
{"members": ["Jo.Smith", "Zoe Day"]}
$ user show Zoe.Day
{"name": "Zoe Day", "disabled": true}
)",
       {{"$PLAN", {file}}});
}

TEST_F(Plan, StopsAtARedLineUnlessItShallGoOn) {
  const std::string file = plan("users disable Nobody\nusers disable Ann.Lee\n");
  play(R"(
$ plan run $PLAN => 2 There is no user "Nobody".
| 1 of 2 commands done, stopped by a RED one
$ user show Ann.Lee
{"disabled": false}
$ plan run $PLAN --go-on => 2
| 2 of 2 commands done
$ user show Ann.Lee
{"disabled": true}
)",
       {{"$PLAN", {file}}});
}

TEST_F(Plan, IsUnderstoodAsAWholeBeforeItsFirstLineRuns) {
  const auto refused = [&](std::string_view last, Arguments options, int exit_code, std::string_view why) {
    Arguments words = {"plan", "run", plan("users disable Jo.Smith\n" + std::string(last))};
    words.insert(words.end(), options.begin(), options.end());
    const ProgramResult result = run(words);
    EXPECT_EQ(result.exit_code, exit_code) << last;
    EXPECT_THAT(result.err, HasSubstr(std::string(why))) << last;
  };
  refused("users disabel Jo.Smith", {}, 64, "line 2: unknown command or option disabel");
  refused("user show Jo.Smith", {"--dry-run"}, 64, "line 2: this command has no --dry-run");
  refused("--lab /tmp user list", {}, 64, "line 2: ");
  refused("plan run x", {}, 64, "line 2: ");
  refused("user list --help", {}, 64, "line 2: a plan runs commands");
  refused("users disable \"Jo", {}, 65, "line 2: a double quote is not closed");
  refused("users disable \x01", {}, 65, "line 2: the control character");
  EXPECT_EQ(result_of({"user", "show", "Jo.Smith"})["disabled"], false);
}

}  // namespace
}  // namespace twk::test
