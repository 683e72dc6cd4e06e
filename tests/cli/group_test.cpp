#include "cli/twk_fixture.hpp"

namespace twk::test {
namespace {

class GroupCommands : public TwkLab {
 protected:
  GroupCommands() {
    play(R"(
$ user create $STAFF Ann "" Marsh
$ user create $STAFF Bob "" Marsh
$ group create Drivers --description "Who drive"
> GREEN  Added group Drivers
)");
  }
};

TEST_F(GroupCommands, CreateMakesAGroupOfTheKindAndScope) {
  play(R"(
$ group show Drivers
{"kind": "security", "scope": "global", "description": "Who drive", "dn": "CN=Drivers,CN=Users,DC=twk,DC=test"}
$ group create 'R&D (x)' --scope domain-local --kind distribution
$ group show 'R&D (x)'
{"kind": "distribution", "scope": "domain local"}
)");
}

TEST_F(GroupCommands, CreateReportsRefusals) {
  play(R"(
$ group create Drivers => 2 Error Adding Group:
| RED
$ group create "  " => 2
$ group create a=b => 2
$ group create Late --scope world => 64
$ group create => 64
)");
}

TEST_F(GroupCommands, MembersMarksThoseByPrimaryGroup) {
  play(R"(
$ --json group members "domain users"
| {"name":"Ann.Marsh","primary":true,
- "primary":false
$ group add-member Drivers Ann.Marsh
$ --json group members Drivers
> {"name":"Ann.Marsh","primary":false,"dn":"CN=Ann.Marsh,$NEW"}
$ group members Driver => 2 Near: "Drivers"
)");
}

TEST_F(GroupCommands, MembersAreListedWhateverTheLoadLeavesOut) {
  play(R"(
$ settings set ADO SkipUsers TRUE
$ settings set ADO SkipGroups TRUE
$ group add-member Drivers Ann.Marsh
$ group members Drivers
{"name": "Ann.Marsh"}
$ settings get ADO SkipUsers
> TRUE
)");
}

TEST_F(GroupCommands, AUserWhoCannotBeAddedStopsNobodyElse) {
  play(R"(
$ group add-member Drivers Nobody Ann.Marsh bob.marsh Ann.Marsh => 2
{"light": "RED", "user": "Nobody"}
{"light": "GREEN", "user": "Ann.Marsh"}
{"light": "GREEN", "user": "bob.marsh"}
$ group add-member Drivers Ann.Marsh => 1
{"message": "Ann.Marsh is a member already."}
$ group remove-member Drivers Ann.Marsh
> GREEN  Ann.Marsh removed from Drivers.
$ group remove-member Drivers Ann.Marsh Bob.Marsh => 1
{"light": "YELLOW"}
{"light": "GREEN"}
)");
}

TEST_F(GroupCommands, APrimaryGroupIsNotLeft) {
  play(R"(
$ group remove-member "Domain Users" Ann.Marsh => 1 Can't remove user 'Ann.Marsh' from 'Domain Users'
> YELLOW  Ann.Marsh: it is their primary Group
)");
}

TEST_F(GroupCommands, DeleteAsksFirst) {
  play(R"(
$ group delete Drivers => 1 Sure to Delete Global Group Drivers
$ group show Drivers
$ --yes group delete drivers
> GREEN  Deleted group Drivers
$ group show Drivers => 2
$ --yes group delete "Domain Users" => 2 Error Deleting Group
| RED  Error Deleting Group Domain Users:
)");
}

TEST_F(GroupCommands, CopyReportsEachUserAndTheSum) {
  play(R"(
$ group add-member Drivers Ann.Marsh Bob.Marsh
$ group create Pilots
$ group add-member Pilots Bob.Marsh
$ group copy Drivers Pilots => 1
$ group members Pilots
{"name": "Bob.Marsh"}
$ --yes group copy Drivers Pilots => 1
{"light": "GREEN"}
{"light": "YELLOW"}
{"light": "YELLOW", "message": "2 of 2 users: 1 added, 1 already members, 0 refused."}
$ group members Pilots
{"name": "Ann.Marsh"}
{"name": "Bob.Marsh"}
$ --yes group copy Drivers Nothing => 2
)");
}

class GroupCommandsOfAnNtDomain : public GroupCommands {
 protected:
  static void SetUpTestSuite() { make("nt"); }
};

TEST_F(GroupCommandsOfAnNtDomain, HaveOnlyGlobalGroupsAndMembersByName) {
  play(R"(
$ group show Drivers
{"scope": "global"}
$ group create aaaaaaaaaabbbbbbbbbbc => 2 max 20 Chrs
$ group create Locals --scope domain-local => 2 has no domain-local groups
$ group add-member Drivers Ann.Marsh
$ --json group members Drivers
> {"name":"Ann.Marsh","primary":null,"dn":""}
$ --yes group copy Drivers Drivers => 1
| YELLOW  Ann.Marsh User already a member.
$ --yes group delete Drivers
)");
}

}  // namespace
}  // namespace twk::test
