#include "cli/twk_fixture.hpp"

namespace twk::test {
namespace {

class UserDetailsCommands : public TwkLab {
 protected:
  UserDetailsCommands() { play("$ user create $STAFF John Fred Smith"); }
};

TEST_F(UserDetailsCommands, SetChangesTheFieldsThatAreNamed) {
  play(R"(
$ user set John.Smith "description=Manager = of all" drive=K: home=\\FS1\Users\js script= logonName=js@twk.test
  expires=2026-12-31 disabled=yes cantChange=yes mustChange=no
> GREEN  John.Smith: Saved...
$ user show John.Smith
{"description": "Manager = of all", "homeDrive": "K:", "homeDirectory": "\\\\FS1\\Users\\js", "loginScript": "",
 "userPrincipalName": "js@twk.test", "expires": "2026-12-31", "disabled": true, "cannotChangePassword": true,
 "mustChangePassword": false}
$ user set John.Smith expires=Never disabled=no
$ user show John.Smith
{"expires": null, "disabled": false}
)");
}

TEST_F(UserDetailsCommands, SetTakesACustomAttributeByItsNameOrNumber) {
  play(R"(
$ settings set Custom Custom1 "Staff number"
$ settings set Custom Property1 employeeID
$ user set John.Smith "staff NUMBER=47"
$ lab export
| employeeID: 47
$ user set John.Smith custom1=48
$ lab export
| employeeID: 48
$ user set John.Smith custom1=99999999999999999 description=kept => 1
| Saved... but not employeeID:
$ user show John.Smith
{"description": "kept"}
$ user set John.Smith custom2=48 => 2
)");
}

TEST_F(UserDetailsCommands, SetRefusesWhatNoFieldAcceptsAndWritesNothing) {
  play(R"(
$ user set John.Smith description=changed colour=red => 64 no field "colour". Fields: fullName, description
$ user set John.Smith description=changed description => 64 is not FIELD=VALUE
$ user set John.Smith description=changed expires=soon => 64 31/12/2026
$ user set John.Smith description=changed expires=1.2.30 => 64 before 1970
$ user set John.Smith description=changed --expires-after "" => 64 31/12/2026
$ user set John.Smith description=changed --expires-after 1/2/2030 expires=never => 64 give either
$ user set John.Smith description=changed lockedOut=yes => 64 cannot be locked out by hand
$ user set John.Smith description=changed disabled=perhaps => 64 takes yes or no
$ user set John.Smith description=changed drive=h: => 2
> RED  John.Smith: Home Drive Format Incorrect
$ user set Nobody office=1 => 2
$ user show John.Smith
- changed
)");
}

TEST_F(UserDetailsCommands, GroupsAreListedAddedAndRemoved) {
  play(R"(
$ user groups John.Smith
{"name": "Domain Users", "primary": true}
{"name": "Staff", "primary": false}
$ user groups John.Smith --add "domain guests" --remove Staff
$ user show John.Smith
{"groups": ["Domain Guests", "Domain Users"]}
)");
}

TEST_F(UserDetailsCommands, GroupsThatCannotBeChangedAreReportedAndTheOthersAreKept) {
  play(R"(
$ user groups John.Smith --add Staff => 2 already in the group "Staff"
$ user groups John.Smith --remove "Domain Guests" => 2 not in the group
$ user groups John.Smith --add "Domain Guests" --add Stuff => 2 no group "Stuff"
$ user groups John.Smith --remove "Domain Users" => 2 is the user's primary group
$ user show John.Smith
{"groups": ["Domain Users", "Staff"]}
)");
}

class NtUserDetailsCommands : public TwkLab {
 protected:
  static void SetUpTestSuite() { make("nt"); }
};

TEST_F(NtUserDetailsCommands, WorkInAWinNtDomainToo) {
  play(R"(
$ user create $STAFF John Fred Smith
$ user set John.Smith description=Manager expires=31/12/2026
$ user groups John.Smith --remove Staff
$ user show John.Smith
{"description": "Manager", "expires": "2026-12-31", "groups": ["Domain Users"]}
$ user set John.Smith office=12 => 2 has no office
)");
}

}  // namespace
}  // namespace twk::test
