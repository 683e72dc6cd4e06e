#include "cli/twk_fixture.hpp"

namespace twk::test {
namespace {

/// Jo Smith and Ann Lee, who are members of Staff.
class SetAttribute : public TwkLab {
 protected:
  SetAttribute() {
    play(R"(
$ user create $STAFF Jo Smith
$ user create $STAFF Ann Lee
)");
  }
};

TEST_F(SetAttribute, SetsTheValueForNamedUsersUnitsAndFilesOfNames) {
  play(R"(
$ users set-attribute title "Clerk of %UserName%" Jo.Smith Ann.Lee
{"light": "GREEN", "user": "Jo.Smith"}
{"light": "GREEN", "user": "Ann.Lee"}
{"light": "GREEN", "message": "2 done, 0 of them with warnings, 0 failed, 0 unknown."}
$ lab export
| title: Clerk of Jo.Smith
| title: Clerk of Ann.Lee
$ log show
| Change property:'title' to 'Clerk of Jo.Smith' for Jo.Smith
$ users set-attribute title Porter --ou $NEW
$ users set-attribute title Head --from-file -
< Ann.Lee
{"user": "Ann.Lee"}
{"done": 1}
$ lab export
- title: Clerk
| title: Porter
| title: Head
)");
}

TEST_F(SetAttribute, ReplacesUnlessItIsToldToAppend) {
  play(R"(
$ users set-attribute otherTelephone 11 Jo.Smith
$ users set-attribute otherTelephone 22 Jo.Smith --append
$ lab export
| otherTelephone: 11
| otherTelephone: 22
$ users set-attribute otherTelephone 33 Jo.Smith --replace
$ lab export
| otherTelephone: 33
- otherTelephone: 11
$ users set-attribute title x Jo.Smith --append => 64 has a single value
$ users set-attribute WTSInitialProgram x Jo.Smith --append => 64 has a single value
)");
}

TEST_F(SetAttribute, ReportsWhoFailedAndContinues) {
  play(R"(
$ users set-attribute title Clerk Jo.Smith Nobody Ann.Lee => 1
$ lab export
| title: Clerk
$ users set-attribute countryCode many Jo.Smith Ann.Lee => 2
{"light": "RED", "user": "Jo.Smith"}
{"light": "RED", "user": "Ann.Lee"}
{"light": "RED", "message": "0 done, 0 of them with warnings, 2 failed, 0 unknown."}
)");
}

TEST_F(SetAttribute, RefusesWhatCannotBeBeforeAnythingIsChanged) {
  play(R"(
$ users set-attribute titel Clerk Jo.Smith => 2 "titel"
! "title"
>
$ users set-attribute WTSTimeoutIdl Clerk Jo.Smith => 2 "WTSTimeoutIdle"
$ users set-attribute member Clerk Jo.Smith => 2 "memberOf"
$ users set-attribute title "" Jo.Smith => 64
$ users set-attribute WTSTimeoutIdle "7 mins" Jo.Smith => 64
$ users set-attribute WTSAllowLogonTerminalServer 1 Jo.Smith => 64
$ users set-attribute title Clerk => 64
$ users set-attribute title => 64
$ users set-attribute title --group Staff => 64
$ users set-attribute title --from-file a.csv --group Staff => 64
$ users set-attribute title --from-file a.csv --from-file b.csv => 64
$ users set-attribute title --from-file /nonexistent => 65
$ users set-attribute otherTelephone 1 Jo.Smith --append --replace => 64
)");
}

TEST_F(SetAttribute, SetsTerminalServerSettings) {
  play(R"(
$ users set-attribute wtstimeoutsettingsidle "5 mins" Jo.Smith
$ ts show Jo.Smith
{"idleLimit": 300000}
$ users set-attribute WTSTimeoutIdle --from-file - => 2
< Jo.Smith,7 mins
< Ann.Lee,10 mins
{"line": 1, "light": "RED", "user": "Jo.Smith"}
{"line": 2, "light": "GREEN", "user": "Ann.Lee"}
{"message": "1 done, 0 of them with warnings, 1 failed, 0 unknown."}
)");
}

TEST_F(SetAttribute, FileSetsASeparateValueForEachUser) {
  play(R"(
$ users set-attribute title --from-file $TITLES => 2
{"line": 1, "light": "GREEN", "user": "Jo.Smith"}
{"line": 2, "light": "RED", "user": "Nobody"}
{"line": 4, "light": "RED", "user": "ann.lee"}
{"line": 5, "light": "GREEN", "user": "Ann.Lee"}
{"line": 6, "light": "RED", "user": "Ann Lee"}
{"light": "RED", "message": "2 done, 0 of them with warnings, 1 failed, 2 unknown."}
$ lab export
| title: "Head, of ""it"""
| title:: RnJhbsOnb2lz
$ log show
| titles.csv, line 4: ann.lee: There is no comma after the name
)",
       {{"$TITLES",
         {file("titles.csv",
               "Jo.Smith,\"Head, of \"\"it\"\"\"\r\nNobody,x\r\n\r\nann.lee\r\n"
               "Ann.Lee,Fran\xE7ois\r\nAnn Lee,\r\n")}}});
}

class SetAttributeInWinNt : public TwkLab {
 protected:
  static void SetUpTestSuite() { make("nt"); }
};

TEST_F(SetAttributeInWinNt, IsRefused) {
  play("$ users set-attribute title Clerk Administrator => 2 is not an Active Directory domain");
}

}  // namespace
}  // namespace twk::test
