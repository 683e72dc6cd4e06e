#include "cli/twk_fixture.hpp"

namespace twk::test {
namespace {

using Users = TwkLab;

TEST_F(Users, AreCreatedAsTheTemplateSays) {
  play(R"(
$ user create $STAFF --description New John Fred Smith
> GREEN  John.Smith Created User
$ user show john.smith
{"name": "John.Smith", "dn": "CN=John.Smith,$NEW", "samAccountName": "John.Smith",
 "userPrincipalName": "John.Smith@twk.test", "fullName": "John Smith", "description": "New",
 "homeDirectory": "\\\\FS1\\Users\\John.Smith", "homeDrive": "H:",
 "profilePath": "\\\\FS1\\Profiles\\John.Smith", "loginScript": "logon.cmd",
 "disabled": false, "locked": false, "passwordNeverExpires": false, "cannotChangePassword": false,
 "mustChangePassword": true, "expires": null, "primaryGroup": "Domain Users",
 "groups": ["Domain Users", "Staff"], "logonHours": "FFFFFFFFFFFFFFFFFFFFFFFFFFFFFFFFFFFFFFFFFF"}
$ user list --ou "ou=new starters,dc=TWK,dc=test"
{"name": "John.Smith"}
$ group show staff
{"members": ["John.Smith"]}
)");
  EXPECT_TRUE(std::filesystem::is_directory(lab() + "/servers/FS1/D/Users/John.Smith"));
}

// The principal name is taken, which is a warning.
TEST_F(Users, OfATakenNameGetTheAlternativeOne) {
  play(R"(
$ user create $STAFF John Smith
$ user create $STAFF John Smith => 1
| John.Smith1 Created User
$ user show John.Smith1
{"userPrincipalName": ""}
)");
}

TEST_F(Users, AreCreatedNextToTheOneTheyAreLike) {
  play(R"(
$ template add Bare
$ user create $STAFF John Smith
$ user create --template Bare --site "Head Office" --like john.smith -- -Ann O-Lee
$ user show -- -Ann.O-Lee
{"dn": "CN=-Ann.O-Lee,$NEW", "groups": ["Domain Users", "Staff"]}
)");
}

TEST_F(Users, ThatCannotBeCreatedAreRefusedWithTheReason) {
  const auto domain = [&] {
    return get_file(lab() + "/domain.ldif") + get_file(lab() + "/domain.journal.ldif");
  };
  play("$ user list");  // makes the journal
  const std::string before = domain();
  play(R"(
$ user create --template Staff --site "Head Office" Al Bo => 64 --ou DN or --like USER
$ user create --template Staff --site "Head Office" --ou "OU=New Starter,DC=twk,DC=test" Al Bo
  => 2 Near: "OU=New
$ user create --template Staff --site "Head Office" --like nobody Al Bo => 2 no user "nobody"
$ user create $STAFF --id a*b Al Bo => 2
| Invalid Character in User Name: *
$ user create $STAFF --id 123456789012345678901 Al Bo => 2
| 1-20 chrs
)");
  EXPECT_EQ(domain(), before);
}

class NtUsers : public TwkLab {
 protected:
  static void SetUpTestSuite() { make("nt"); }
};

TEST_F(NtUsers, AreCreatedShownAndListed) {
  play(R"(
$ user create $STAFF John Smith
$ user show john.smith
{"homeDrive": "H:", "mustChangePassword": true, "primaryGroup": "Domain Users", "expires": null}
$ group show STAFF
{"members": ["John.Smith"]}
$ user list
| Administrator
| John.Smith
)");
}

}  // namespace
}  // namespace twk::test
