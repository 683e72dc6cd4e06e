#include "cli/twk_fixture.hpp"

namespace twk::test {
namespace {

/// Jo Smith with a file in her home.
class ExistingUsers : public TwkLab {
 protected:
  ExistingUsers() {
    play("$ user create $STAFF Jo Smith");
    put_file(home() + "/a.txt", "text");
  }
  [[nodiscard]] std::string home() const { return lab() + "/servers/FS1/D/Users/Jo.Smith"; }
};

TEST_F(ExistingUsers, AreDeletedWithTheirFoldersAfterTheQuestionButNotByADryRun) {
  play(R"(
$ user delete Jo.Smith --account --data --dry-run
> Delete the account LDAP://twk.test/CN=Jo.Smith,$NEW
> Delete the folder \\FS1\D$\Users\Jo.Smith with 1 file, 4 bytes
> Delete the folder \\FS1\D$\Profiles\Jo.Smith with 0 files, 0 bytes
$ user delete Jo.Smith --account --data => 1
> YELLOW  Jo.Smith: nothing was done
$ user show Jo.Smith
)");
  EXPECT_TRUE(std::filesystem::exists(home() + "/a.txt"));
  play(R"(
$ user delete Jo.Smith --account --data --no-prompting
{"light": "GREEN"}
$ user show Jo.Smith => 2
)");
  EXPECT_FALSE(std::filesystem::exists(home()));
}

TEST_F(ExistingUsers, WhatIsToBeDoneMustBeSaid) {
  play(R"(
$ user delete Jo.Smith => 64
$ user delete Jo.Smith --account --take-ownership => 64
$ user delete Jo.Smith --mail => 64
$ user rename Jo.Smith => 64
$ profile delete Jo.Smith --workstation PC7 => 64
$ user move Jo.Smith --site "Head Office" --template Staff --data all => 64
$ user delete Nobody --account => 2
)");
}

TEST_F(ExistingUsers, MoveToAnotherServer) {
  for (const char* const name : {"Users", "Profiles"})
    std::filesystem::create_directories(lab() + "/servers/FS2/D/" + name);
  // The second move finds everything in place.
  play(R"(
$ site add Branch --nt-server FS2
$ $MOVE --dry-run => 2
| RED  User Jo.Smith was not moved: FS2 has no share Profiles, to which
$ $MOVE => 2
| RED  User Jo.Smith was not moved: FS2 has no share Profiles, to which
$ share add FS2 Users D:\Users
$ share add FS2 Profiles D:\Profiles
$ $MOVE
$ $MOVE
)",
       {{"$MOVE",
         {"user", "move", "Jo.Smith", "--site", "Branch", "--template", "Staff", "--data", "move",
          "--no-prompt"}}});
  EXPECT_TRUE(std::filesystem::exists(lab() + "/servers/FS2/D/Users/Jo.Smith/a.txt"));
  EXPECT_FALSE(std::filesystem::exists(home()));
}

TEST_F(ExistingUsers, ARenamingIsRehearsedOrRefusedAsAWhole) {
  play(R"(
$ user rename Jo.Smith --logon ann --full-name "Ann West" --rename-dirs --dry-run
| samAccountName = ann
| Rename \\FS1\D$\Users\Jo.Smith to \\FS1\D$\Users\
$ user rename Jo.Smith --logon a*b --full-name a*b --rename-dirs --dry-run => 2
| it holds the character *
$ user rename Jo.Smith --logon a*b --full-name a*b --rename-dirs => 2
| it holds the character *
$ user rename Jo.Smith --upn ann@nowhere.example => 64 it has @twk.test
$ user show Jo.Smith
{"userPrincipalName": "Jo.Smith@twk.test"}
)");
  EXPECT_TRUE(std::filesystem::exists(home() + "/a.txt"));
}

TEST_F(ExistingUsers, GetOtherNamesAndAnotherPassword) {
  play(R"(
$ user rename Jo.Smith --logon ann --full-name "West, Ann" --display "" --rename-dirs
$ user show ann
{"dn": "CN=West\\, Ann,$NEW", "fullName": ""}
$ --yes user reset-password ann
$ --yes user reset-password ann --password-stdin => 2
< x
| the password does not meet the domain's policy; choose a longer one
$ --yes profile delete ann
$ --yes profile delete ann => 2
)");
}

}  // namespace
}  // namespace twk::test
