#include "cli/twk_fixture.hpp"

namespace twk::test {
namespace {

/// Everyone contains Staff and Drivers; Drivers contains Night Drivers, of whom Ann is one. Groups go into
/// groups by an import, because the commands add users.
class NestedGroups : public TwkLab {
 protected:
  NestedGroups() {
    play(R"(
$ user create $STAFF Ann Lee
$ user create $STAFF Bob Day
$ group create All
$ group create Drivers
$ group create Night
$ group add-member Night Ann.Lee
)");
    put_in("All", "Drivers");
    put_in("Drivers", "Night");
  }

  static std::string dn(const std::string& group) { return "CN=" + group + ",CN=Users,DC=twk,DC=test"; }
  void put_in(const std::string& group, const std::string& member) const {
    const std::string change =
        "dn: " + dn(group) + "\nchangetype: modify\nadd: member\nmember: " + dn(member) + "\n-\n";
    EXPECT_EQ(run({"lab", "import", "-"}, change).exit_code, 0);
  }
};

TEST_F(NestedGroups, MembersAndGroupsAreFollowed) {
  play(R"(
$ group members All
>
$ group members All --nested
{"name": "Ann.Lee", "primary": false, "via": "Night", "dn": "CN=Ann.Lee,$NEW"}
$ --json group members Users --nested
| {"name":"Ann.Lee","primary":true,"via":"Domain Users",
$ --json user groups Ann.Lee --effective
| {"name":"All","primary":false,"via":"Drivers"}
| {"name":"Domain Users","primary":true,"via":""}
| {"name":"Drivers","primary":false,"via":"Night"}
| {"name":"Night","primary":false,"via":""}
$ user groups Ann.Lee --effective --add All => 64 --effective
$ --json group find-empty
- "All"
- "Night"
- "Domain Users"
| "name":"Domain Computers"
$ group members Nothing --nested => 2
)");
}

TEST_F(NestedGroups, ATreeMarksCirclesAndWhatItShowedBefore) {
  play(R"(
$ group tree All
| All        CN=
|   Drivers  CN=
|     Night  CN=
)");
  put_in("Night", "All");
  put_in("All", "Night");
  play(R"(
$ group tree All
|       All  (circle)
|   Night  (see above)
$ --json group tree Night
| {"name":"Night","depth":0,"circle":false,"repeated":false,
| "circle":true
$ --json user groups Ann.Lee --effective
| "name":"All"
$ group members Night --nested
{"name": "Ann.Lee"}
)");
}

TEST_F(NestedGroups, AreRenamedWithTheirAccounts) {
  play(R"(
$ group rename Drivers "Van Drivers" --dry-run
| sAMAccountName = Van Drivers
$ group rename Drivers "Van Drivers"
> GREEN  Renamed group Drivers to Van Drivers
$ group show 'van drivers'
{"dn": "CN=Van Drivers,CN=Users,DC=twk,DC=test", "members": ["Night"]}
$ group rename "Van Drivers" night => 2 
| The name "night" is in use
$ group rename "Van Drivers" " " => 2
| cannot be blank
$ group rename "Van Drivers" 'a=b' => 2
| RED
$ group rename "Van Drivers" 'R&D #7 (x)'
$ group show 'r&d #7 (x)'
{"members": ["Night"]}
$ group rename Staff Team => 1
| but these templates name Staff, so choose the group there again: "Staff"
$ group rename Administrators Admins => 2
| The domain needs
$ group show Administrators
)");
}

TEST_F(NestedGroups, ChangeScopeAndKindAsADirectoryAllows) {
  play(R"(
$ group set Night --scope universal => 2 
| A global group cannot have a universal group as a member.
$ group set All --scope local => 2
| The specified group type is invalid.
$ group set All --scope universal --dry-run
| groupType =
$ group set All --scope universal
> GREEN  Changed group All
$ group set All --scope local --kind distribution
$ group show All
{"scope": "domain local", "kind": "distribution"}
$ group set All --scope universal
$ group set Drivers --scope universal
$ group set All --scope global => 2
| A global group cannot have a universal group as a member.
$ group set "Domain Users" --kind distribution => 2
| A group with primary members cannot change to a security-disabled group.
$ group set All => 64 --scope or --kind
$ group set All --scope world => 64
)");
}

}  // namespace
}  // namespace twk::test
