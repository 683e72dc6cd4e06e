#include <gmock/gmock.h>

#include "cli/twk_fixture.hpp"

namespace twk::test {
namespace {

using testing::HasSubstr;

class Reports : public TwkLab {
 protected:
  Reports() {
    play(R"(
$ user create $STAFF Ann Lee
$ user create $STAFF Jo Smith
)");
  }

  /// Lines of "lab.conf", instead of those of their names.
  void configure(const std::string& lines) const {
    std::string text = get_file(lab() + "/lab.conf");
    for (const std::string name : {"password.maximum_age", "lockout.threshold", "lockout.duration"}) {
      const std::size_t at = text.find(name);
      text.erase(at, text.find('\n', at) + 1 - at);
    }
    put_file(lab() + "/lab.conf", text + lines);
  }
};

TEST_F(Reports, FindAccountsThatEndedOrSoonWill) {
  play(R"(
$ user set Ann.Lee expires=31/12/2020
$ users find-expired
{"user": "Ann.Lee", "expires": "2020-12-31", "disabled": false, "dn": "CN=Ann.Lee,$NEW"}
$ users find-expired --before today => 0 1 user found
| Ends
| 2020-12-31
$ users find-expired --within 30d => 0 0 users found
$ users find-expired --within 30000d
>
$ user set Jo.Smith expires=31/12/2050
$ users find-expired --within 2000w
{"user": "Jo.Smith", "expires": "2050-12-31"}
$ users find-expired --within soon => 64 30d
$ users find-expired --within 30d --before today => 64 --before
$ users find-expired --before 12/12/1920 => 64 which is before 1970
)");
}

TEST_F(Reports, FindLocksUntilTheyAreOver) {
  configure("lockout.duration = 30\n");
  play(R"(
$ users find-locked
>
$ lab lock Ann.Lee
> GREEN  Ann.Lee is locked out.
$ users find-locked
{"user": "Ann.Lee", "dn": "CN=Ann.Lee,$NEW"}
$ user show Ann.Lee
{"locked": true}
$ users unlock Ann.Lee
$ users find-locked => 0 0 users found
>
)");
}

TEST_F(Reports, FindWhoHasNotLoggedOn) {
  play(R"(
$ --json users find-never-logged-on
| "user":"Ann.Lee"
| "user":"Jo.Smith"
$ users find-inactive --days 1
- Ann.Lee
$ --json users find-inactive --days 0
| {"user":"Ann.Lee","lastLogon":null,"neverLoggedOn":true,
$ user set Ann.Lee mustChange=no
$ lab logon Ann.Lee --password-stdin
< Welcome-2-Work
$ --json users find-never-logged-on
- Ann.Lee
$ users find-inactive => 64 --days
)");
}

TEST_F(Reports, FindPasswordsThatWillExpire) {
  play(R"(
$ users find-password-expiring => 0 Passwords of this domain never expire.
>
)");
  configure("password.maximum_age = 42\n");
  play(R"(
$ user set Ann.Lee mustChange=no
$ --json users find-password-expiring --within 41d
- Ann.Lee
$ --json users find-password-expiring --within 7w
| {"user":"Ann.Lee","passwordExpires":"20
- Jo.Smith
$ users password-never-expires Ann.Lee
$ --json users find-password-expiring --within 43d
- Ann.Lee
)");
}

TEST_F(Reports, ShowAttributesInWords) {
  play(R"-(
$ user show Ann.Lee --attributes userAccountControl,samaccounttype,accountExpires,mail,logonHours
{"userAccountControl": "normal account (512)", "sAMAccountType": "user account (805306368)",
 "accountExpires": "never", "mail": null, "logonHours": "all hours"}
$ user show Ann.Lee --all
| S-1-5-21-
| must be changed at the next logon
- supplementalCredentials
$ user show Ann.Lee --attributes mial => 64 Near: "mail"
$ user show Ann.Lee --attributes , => 64 --attributes
$ user show Ann.Lee --all --attributes mail => 64 --all
$ user show Nobody --all => 2 There is no user "Nobody".
)-");
}

TEST_F(Reports, ListColumnsAsTablesAndCsv) {
  play(R"-(
$ user set Ann.Lee 'description=says "hi", often'
$ user list --ou $NEW --columns name,OU,description,locked
{"name": "Ann.Lee", "ou": "$NEW", "description": "says \"hi\", often", "locked": false}
{"name": "Jo.Smith"}
$ user list --columns name,'(x)' => 64 There is no attribute "(x)".
$ --json user list --csv => 64 --json and --csv exclude each other
$ user list --csv --ou OU=Nowhere => 2
)-");
  const ProgramResult result =
      run({"user", "list", "--ou", kNewStarters, "--columns", "name,description,dn", "--csv"});
  EXPECT_EQ(result.out, "name,description,dn\r\nAnn.Lee,\"says \"\"hi\"\", often\",\"CN=Ann.Lee," +
                            kNewStarters + "\"\r\nJo.Smith,,\"CN=Jo.Smith," + kNewStarters + "\"\r\n");
  EXPECT_EQ(run({"users", "find-locked", "--csv"}).out, "user,lockedSince,disabled,dn\r\n");
}

TEST_F(Reports, CopyBringsAUserToAnothersGroupsAndUnit) {
  play(R"(
$ group create Drivers
$ user groups Jo.Smith --add Drivers
$ ou create Garage
$ user move-ou Jo.Smith OU=Garage,DC=twk,DC=test
$ user copy Ann.Lee --like Jo.Smith --dry-run
| Add LDAP://twk.test/CN=Ann.Lee,$NEW to the group LDAP://twk.test/CN=Drivers,CN=Users,DC=twk,DC=test
| Move LDAP://twk.test/CN=Ann.Lee,$NEW to LDAP://twk.test/OU=Garage,DC=twk,DC=test
$ --json user diff Ann.Lee Jo.Smith
| {"what":"ou","first":"$NEW","second":"OU=Garage,DC=twk,DC=test"}
| {"what":"group","first":"","second":"Drivers"}
$ user copy Ann.Lee --like Jo.Smith
{"light": "GREEN", "user": "Ann.Lee", "dn": "CN=Ann.Lee,OU=Garage,DC=twk,DC=test", "joined": ["Drivers"],
 "left": [], "message": "Ann.Lee: joined Drivers; moved to OU=Garage,DC=twk,DC=test", "warnings": []}
$ user copy Ann.Lee --like Jo.Smith
| GREEN  Ann.Lee is like Jo.Smith already.
$ user groups Jo.Smith --remove Drivers
$ user copy Ann.Lee --like Jo.Smith --exactly
| left Drivers
$ user copy Ann.Lee --like ann.lee => 64
$ user copy Ann.Lee --like Nobody => 2
)");
}

TEST_F(Reports, DiffNamesWhatDiffers) {
  play(R"(
$ user set Ann.Lee office=7
$ --json user diff Ann.Lee Jo.Smith
| {"what":"physicalDeliveryOfficeName","first":"7","second":""}
- objectGUID
$ user diff Ann.Lee Jo.Smith --all
| objectGUID
$ user diff Ann.Lee Ann.Lee => 0 do not differ
>
$ template copy Staff Other
$ template diff Staff Other => 0 do not differ
>
$ template edit Other --home-drive J: --group Staff --variable Town=York
$ --json template diff Staff Other
| {"what":"homeDrive","first":"H:","second":"J:"}
| {"what":"groups","first":["Domain Users"],"second":[]}
$ template diff Staff Nothing => 2
)");
}

TEST_F(Reports, AFileWithSemicolonsSaysSo) {
  play(R"(
$ users enable --from-file $NAMES => 2 names.csv has semicolons between columns
! There is no user "Ann.Lee;Ann".
$ users set-attribute department --from-file $VALUES => 2
| but a semicolon: save the file with commas
)",
       {{"$NAMES", {file("names.csv", "Ann.Lee;Ann\n")}},
        {"$VALUES", {file("values.csv", "Ann.Lee;Sales\n")}}});
}

class ReportsOfAnNtDomain : public TwkLab {
 protected:
  static void SetUpTestSuite() { make("nt"); }
};

TEST_F(ReportsOfAnNtDomain, TellWhatSuchADomainKnows) {
  play(R"(
$ user create $STAFF Jo Smith
$ lab lock Jo.Smith
$ users find-locked
{"user": "Jo.Smith", "lockedSince": null, "dn": ""}
$ user set Jo.Smith expires=31/12/2020
$ users find-expired
{"user": "Jo.Smith", "expires": "2020-12-31"}
$ user show Jo.Smith --attributes UserFlags
| locked out, normal account
$ users find-inactive --days 90 => 2 needs Active Directory
$ users find-password-expiring => 2 needs Active Directory
$ user list --columns name => 2
$ group tree Staff => 2
$ user groups Jo.Smith --effective => 2
$ group rename Staff Team => 2
)");
}

}  // namespace
}  // namespace twk::test
