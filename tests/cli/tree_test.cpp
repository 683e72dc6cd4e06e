#include "cli/twk_fixture.hpp"

namespace twk::test {
namespace {

class TreeCommandLine : public TwkLab {
 protected:
  TreeCommandLine() {
    play(R"(
$ ou create 'Sales, "North"'
$ user create $STAFF John Smith
)");
  }
  const Meanings sales_ = {{"$SALES", {R"(OU=Sales\, \"North\",DC=twk,DC=test)"}}};
};

TEST_F(TreeCommandLine, AnOuIsCreatedByNameOrByDistinguishedName) {
  play(R"(
$ ou create Team+1 --under $SALES
> GREEN  Team+1 Created OU
$ ou create "OU=Inner\, 2,OU=Team\+1,$SALES"
{"light": "GREEN", "message": "Inner, 2 Created OU"}
$ user move-ou John.Smith "OU=Inner\, 2,OU=Team\+1,$SALES"
)",
       sales_);
}

TEST_F(TreeCommandLine, AUserIsMovedAndFoundWhereItIs) {
  play(R"(
$ user move-ou john.smith $SALES
> GREEN  John.Smith Has been moved in the AD
$ user find n.sm
| CN=John.Smith,$SALES
$ user show John.Smith
| CN=John.Smith,$SALES
$ user find "*)(cn=*"
! No user found
>
)",
       sales_);
}

TEST_F(TreeCommandLine, UnitsAreListedRenamedMovedAndDeleted) {
  play(R"(
$ ou create Inner --under $SALES
$ user move-ou John.Smith OU=Inner,$SALES
$ ou list
|   Inner
$ ou show $SALES
{"users": 0, "ous": 1, "usersBelow": 1, "allBelow": 2}
$ ou rename OU=Inner,$SALES "In,side" --dry-run
| to OU=In\,side
$ ou rename OU=Inner,$SALES In,side
| is now OU=In\,side,$SALES
$ ou rename $SALES "New Starters" => 2 the name is already in use
$ ou rename $SALES " " => 64 cannot be blank
$ ou move $SALES OU=In\,side,$SALES => 2 into itself
$ ou move OU=In\,side,$SALES $NEW
$ ou show OU=In\,side,$NEW
{"users": 1}
$ ou delete $SALES --dry-run
| Delete the organizational unit
$ --yes ou delete $SALES
{"light": "GREEN", "deleted": 1}
$ ou delete $NEW => 2 is not empty: 1 user, 1 group and 1 unit below it. --recursive
$ ou delete $NEW --recursive => 1 nothing was done
$ ou delete $NEW --recursive --dry-run
| Delete the account LDAP://twk.test/CN=John.Smith,OU=In\,side,$NEW
$ user show John.Smith
$ --yes ou delete $NEW --recursive
{"light": "GREEN", "deleted": 4}
$ user show John.Smith => 2
$ ou delete CN=Users,DC=twk,DC=test => 2 is not an organizational unit
$ ou show $NEW => 2 There is no
)",
       sales_);
}

TEST_F(TreeCommandLine, RefusalsSayWhy) {
  play(R"(
$ ou create "new starters" => 2 Cannot create the OU new starters
$ ou create "  " => 2 cannot be blank
$ ou create A --under OU=Salse,DC=twk,DC=test => 2 There is no
$ ou create OU=A,DC=twk,DC=test --under DC=twk,DC=test => 64 --under
$ user move-ou John.Smiht $NEW => 2 John.Smith
$ user move-ou John.Smith OU=Nowhere => 2 OU=Nowhere
$ user move-ou John.Smith DC=twk,DC=test => 2 is not an organizational unit
$ user move-ou John.Smith $NEW => 2 was not moved
$ options set PagSize=1 => 2 Near: "PageSize"
$ options set PageSize => 64 NAME=VALUE
$ options set UserLimit=0 => 64 a number from 1 up
$ options set Sort=maybe => 64 true or false
)");
}

TEST_F(TreeCommandLine, OptionsThatAreSetAreShown) {
  play(R"(
$ options set pagesize=500 Search=ldap LoadAllUsers=yes Sort=False
$ options show
{"pageSize": 500, "userLimit": 99999, "skipUsers": false, "skipGroups": false, "loadAllUsers": true,
 "templateGroupsOnly": false, "search": "LDAP://", "sort": false}
$ options set PageSize=
{"pageSize": 1000}
)");
}

class TreeCommandLineInNt : public TwkLab {
 protected:
  static void SetUpTestSuite() { make("nt"); }
};

TEST_F(TreeCommandLineInNt, HasUsersToFindAndNoOus) {
  play(R"(
$ user create $STAFF John Smith
$ user find JOHN
| John.Smith
$ ou create Sales => 2
$ user move-ou John.Smith OU=Sales => 2 A WinNT domain has no organizational units.
)");
}

}  // namespace
}  // namespace twk::test
