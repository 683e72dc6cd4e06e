#include "cli/twk_fixture.hpp"

namespace twk::test {
namespace {

using testing::HasSubstr;

/// Jo Smith, Ann Lee and Kim Day in a separate unit, in the group "Staff".
class ManyUsers : public TwkLab {
 protected:
  ManyUsers() {
    play(R"(
$ user create $STAFF Jo Smith
$ user create $STAFF Ann Lee
$ user create $STAFF Kim Day
)");
  }
};

TEST_F(ManyUsers, NamesGroupsUnitsAndFilesMakeOneSelection) {
  play(R"(
$ user groups Kim.Day --remove Staff
$ users disable Jo.Smith --from-file $LIST
{"light": "GREEN", "user": "Jo.Smith"}
{"light": "GREEN", "user": "Ann.Lee"}
{"done": 2}
$ user show Ann.Lee
{"disabled": true}
$ user show Kim.Day
{"disabled": false}
$ users enable --group Staff
{"light": "GREEN"}
{"light": "GREEN"}
{"done": 2}
$ user show Ann.Lee
{"disabled": false}
$ users disable --ou $NEW --group Staff
| 5 done, 0 of them with warnings, 0 failed, 0 unknown.
$ user show Kim.Day
{"disabled": true}
)",
       {{"$LIST", {file("names.txt", "# the leavers\r\n\r\n  Ann.Lee  \r\nJo.Smith\r\n")}}});
}

TEST_F(ManyUsers, AnUnknownNameIsReportedWithItsLineAndDoesNotStopTheRest) {
  play(R"(
$ users disable --from-file $LIST --group "No Such" => 1 $LIST:2: There is no user "Nobody".
! $LIST:3: There is no user "*".
! There is no group "No Such".
{"light": "GREEN", "user": "Jo.Smith"}
{"light": "GREEN", "user": "Ann.Lee"}
{"unknown": 3}
$ users disable --from-file -
< Kim.Day
$ user show Kim.Day
{"disabled": true}
$ users disable Nobody => 2
$ users disable --from-file $BROKEN => 2 $BROKEN:1: A name holds the control character U+0000.
)",
       {{"$LIST", {file("names.txt", "Jo.Smith\nNobody\n*\nAnn.Lee")}},
        {"$BROKEN", {file("broken.txt", std::string("Jo\0Smith\n", 9))}}});
}

TEST_F(ManyUsers, UsersMustBeNamed) {
  play(R"(
$ users disable => 64
$ users disable --from-file /no/such/file => 65
$ users delete Jo.Smith => 64
$ users unlock Jo.Smith --password-stdin => 64
< x
$ users delete --from-file $NONE --account => 1 $NONE contains no names
$ group create Empty
$ users delete --group Empty --account => 1 the selection is empty
$ users delete [Jo.Smith,Kim.Day] --account --no-prompting => 2
$ users delete Jo.Smith --account --mail --no-prompting --exchange-server EX5
  => 2 There is no Exchange server of a site "EX5". Near: "EX55"
$ user show Jo.Smith
$ users delete Jo.Smith --account --mail --no-prompting --exchange-server ex55
$ users find-expired --before soon => 64
)",
       {{"$NONE", {file("none", "# all gone\n")}}});
}

TEST_F(ManyUsers, PasswordsAreSetToExpireOrNotAndReset) {
  play(R"(
$ users password-never-expires Jo.Smith --change-at-logon
$ user show Jo.Smith
{"passwordNeverExpires": true, "mustChangePassword": true}
$ users password-expires Jo.Smith
$ user show Jo.Smith
{"passwordNeverExpires": false}
$ users reset-password Jo.Smith Ann.Lee --password-stdin
< Other-Words-77
$ users reset-password Jo.Smith --password-stdin => 2
< x
{"light": "RED", "user": "Jo.Smith"}
{"failed": 1}
$ users unlock Jo.Smith --reset-passwords --password-stdin
< Third-Words-99
)");
}

TEST_F(ManyUsers, ExpiredAccountsAreFound) {
  play(R"(
$ user set Ann.Lee expires=31/12/2020
$ users find-expired --before 2021-01-01
{"dn": "CN=Ann.Lee,$NEW"}
$ users find-expired --before 31/12/2020
>
$ users find-locked
>
)");
}

TEST_F(ManyUsers, AreDeletedByGroupWithTheirFolders) {
  play(R"(
$ users delete --group Staff Jo.Smith --account --data --no-prompting
| 3 done, 0 of them with warnings, 0 failed, 0 unknown.
$ user show Ann.Lee => 2
)");
  EXPECT_FALSE(std::filesystem::exists(lab() + "/servers/FS1/D/Users/Jo.Smith"));
}

TEST_F(ManyUsers, WhoseAccountIsDeletedCountAsDoneWhateverRemainsOfThem) {
  play(R"(
$ user set Ann.Lee home=\\FS1\gone$
$ user set Kim.Day home=\\FS1\gone$
$ users delete Ann.Lee --account --data --no-prompting => 1
{"light": "YELLOW", "user": "Ann.Lee"}
{"message": "1 done, 1 of them with warnings, 0 failed, 0 unknown.", "warned": 1}
$ --json user delete Kim.Day --account --data --no-prompting => 1
| "done":true
- "warnings":[]
)");
}

TEST_F(ManyUsers, ARehearsedDeletionChangesNothing) {
  play(R"(
$ users delete --ou $NEW --account --dry-run
| Delete the account LDAP://twk.test/CN=Kim.Day,$NEW
| 3 rehearsed, 0 of them with warnings, 0 failed, 0 unknown.
$ user show Kim.Day
)");
}

TEST_F(ManyUsers, AreMovedToASiteAndTemplate) {
  play(R"(
$ site add Branch --nt-server FS1
$ users move --ou $NEW --site Branch --template Staff --data nothing --no-prompt
| 3 done
)");
}

TEST_F(ManyUsers, CtrlCStopsAfterTheCurrentUser) {
  play("$ user import $FILE $STAFF", {{"$FILE", {file("many.csv", new_people(150))}}});
  const ProgramResult result = run({"users", "disable", "--ou", kNewStarters}, "\x03", at_terminal());
  EXPECT_EQ(result.exit_code, 1) << result.out;
  EXPECT_THAT(result.out, testing::AllOf(HasSubstr("GREEN"), HasSubstr(" 0 failed, 0 unknown, stopped."),
                                         testing::Not(HasSubstr("153 done"))));
}

class ManyUsersOfAnNtDomain : public TwkLab {
 protected:
  static void SetUpTestSuite() { make("nt"); }
};

TEST_F(ManyUsersOfAnNtDomain, AreDisabledByNameAndGroupAndFound) {
  play(R"(
$ user create $STAFF Jo Smith
$ user create $STAFF Ann Lee
$ users disable Jo.Smith Nobody --group Staff => 1 There is no user "Nobody".
$ user show Ann.Lee
{"disabled": true}
$ user set Ann.Lee expires=31/12/2020
$ users find-expired --before 1/1/2021
| Ann.Lee
$ users delete --group Staff --account --no-prompting
$ user show Ann.Lee => 2
)");
}

}  // namespace
}  // namespace twk::test
