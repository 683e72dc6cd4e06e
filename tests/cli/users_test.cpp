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

TEST_F(ManyUsers, AreThoseOfTheUnitsBelowThatAFilterFindsWithoutTheExceptions) {
  play(R"(
$ ou create Inner --under $NEW
$ user move-ou Kim.Day OU=Inner,$NEW
$ users disable --ou OU=Inner,$NEW --recurse --except kim.day => 1 the selection is empty
$ users disable --ou $NEW --except Ann.Lee
{"user": "Jo.Smith"}
{"done": 1}
$ users disable --ou $NEW --recurse --except-group Staff => 1 the selection is empty
$ users enable --ou $NEW --recurse --filter (|(cn=Jo*)(cn=Kim*))
{"user": "Jo.Smith"}
{"user": "Kim.Day"}
{"done": 2}
$ users unlock --filter (sAMAccountName=Ann.Lee)
{"user": "Ann.Lee"}
{"done": 1}
$ user move-ou Jo.Smith OU=Inner,$NEW
$ user move-ou Ann.Lee OU=Inner,$NEW
$ users disable --ou $NEW => 1 3 in the units below it: --recurse takes them
! the selection is empty
$ user show Ann.Lee
{"disabled": false}
$ users enable --filter (cn=a)) => 64 Unexpected text after the filter at position 7
$ users enable Jo.Smith --filter (cn=*) => 64 leave out names
$ users enable Jo.Smith --recurse => 64 --ou
$ users disable --group Staff --except Nobody => 2 There is no user "Nobody"
$ users disable --group Staff --except-group Nobody => 2 There is no group "Nobody"
$ user show Jo.Smith
{"disabled": false}
)");
}

TEST_F(ManyUsers, AreMovedToAUnitAndChangeTheirGroups) {
  play(R"(
$ group create Readers
$ ou create Leavers
$ --json users move-ou OU=Leavers,DC=twk,DC=test --group Staff --except Kim.Day --dry-run
| to LDAP://twk.test/OU=Leavers,DC=twk,DC=test","user":"Ann.Lee"}
| "message":"2 rehearsed
$ users move-ou OU=Leavers,DC=twk,DC=test --group Staff --except Kim.Day
{"light": "GREEN"}
{"light": "GREEN"}
{"done": 2}
$ users move-ou OU=Leavers,DC=twk,DC=test Jo.Smith
| is in OU=Leavers,DC=twk,DC=test already
$ users move-ou OU=Nowhere,DC=twk,DC=test Jo.Smith => 2 There is no organizational unit
$ users move-ou DC=twk,DC=test Jo.Smith => 2 is not an organizational unit
$ users groups --add Readers --remove Staff --ou OU=Leavers,DC=twk,DC=test --dry-run
| to the group LDAP://twk.test/CN=Readers
| from the group LDAP://twk.test/CN=Staff
$ group show Readers
{"members": []}
$ users groups --add Readers --remove Staff --ou OU=Leavers,DC=twk,DC=test
{"light": "GREEN"}
{"light": "GREEN"}
{"done": 2, "warned": 0}
$ group show Readers
{"members": ["Ann.Lee", "Jo.Smith"]}
$ group show Staff
{"members": ["Kim.Day"]}
$ users groups --add Readers --remove "Domain Users" Jo.Smith Kim.Day => 1
{"light": "YELLOW", "user": "Jo.Smith"}
{"light": "YELLOW", "user": "Kim.Day"}
{"done": 2, "warned": 2}
$ users groups --remove "Domain Users" Jo.Smith => 2 
| is the primary group
$ users groups --add Raeders Jo.Smith => 2 Near: "Readers"
$ users groups Jo.Smith => 64 --add
)");
}

TEST_F(ManyUsers, AreRenamedByAFile) {
  play(R"(
$ users rename --from-file $LIST --dry-run => 1
| samAccountName = Jo.West
| 2 rehearsed, 0 of them with warnings, 0 failed, 1 unknown.
$ users rename --from-file $LIST => 1
{"line": 2, "user": "Jo.Smith", "light": "GREEN", "message": "Jo.Smith is West, Jo now"}
{"line": 3, "user": "Ann.Lee", "light": "GREEN", "message": "Ann.Lee keeps every name"}
{"line": 4, "user": "Nobody", "light": "RED"}
{"done": 2, "failed": 0, "unknown": 1}
$ user show Jo.West
{"name": "West, Jo", "samAccountName": "Jo.West"}
$ users rename --from-file $HEADING => 65 $HEADING: a column is neither
$ users rename --from-file $OPEN => 65 $OPEN: line 2
)",
       {{"$LIST",
         {file("names.csv", "User;Full name;Logon\nJo.Smith;\"West, Jo\";Jo.West\nAnn.Lee;;\nNobody;x;y\n")}},
        {"$HEADING", {file("heading.csv", "User,Logon,Sirname\nJo.Smith,x,y\n")}},
        {"$OPEN", {file("open.csv", "User,Logon\nJo.Smith,\"x\n")}}});
}

TEST_F(ManyUsers, EveryChangeCanBeRehearsed) {
  play(R"(
$ --json users disable Jo.Smith --dry-run
| "user":"Jo.Smith"}
$ users reset-password Jo.Smith --dry-run
| Set the password of
$ users set-attribute department Sales Jo.Smith --dry-run
| department = Sales
$ --json user set Jo.Smith description=x --dry-run
| "user":"Jo.Smith"}
$ user groups Jo.Smith --remove Staff --dry-run
| Remove LDAP://twk.test/CN=Jo.Smith,$NEW from the group
$ user move-ou Jo.Smith DC=twk,DC=test --dry-run => 2
$ user move-ou Jo.Smith CN=Users,DC=twk,DC=test --dry-run
> Move LDAP://twk.test/CN=Jo.Smith,$NEW to LDAP://twk.test/CN=Users,DC=twk,DC=test
$ user reset-password Jo.Smith --dry-run
| Set the password of
$ group create Readers --dry-run
| Make the group CN=Readers
$ group add-member "Domain Guests" Jo.Smith --dry-run
| to the group
$ group delete Staff --dry-run
| Delete the group LDAP://twk.test/CN=Staff,$NEW
$ share add FS1 New$ D:\Users --dry-run
| Make the share New$
$ share delete FS1 Gone --dry-run => 2 There is no share
$ table set w2k $ROWS --dry-run
| by 1
$ table show w2k
- p,title,Boss
$ user show Jo.Smith
{"disabled": false, "description": "", "groups": ["Domain Users", "Staff"]}
$ group show Readers => 2
)",
       {{"$ROWS", {file("rows.txt", "p,title,Boss\n")}}});
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

TEST_F(ManyUsers, InAPipeOneMessageSaysThatNobodyCanBeAsked) {
  const ProgramResult result = run({"users", "delete", "--group", "Staff", "--account"});
  EXPECT_EQ(result.exit_code, 1) << result.out;
  const std::size_t first = result.err.find("Nobody can be asked");
  EXPECT_NE(first, std::string::npos) << result.err;
  EXPECT_EQ(result.err.rfind("Nobody can be asked"), first) << result.err;
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
