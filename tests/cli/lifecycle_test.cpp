#include <gmock/gmock.h>

#include <filesystem>

#include "cli/twk_fixture.hpp"

namespace twk::test {
namespace {

using testing::HasSubstr;

/// Jo Smith with a file in her home.
class ExistingUsers : public TwkLab {
 protected:
  ExistingUsers() {
    EXPECT_EQ(create({"--ou", kNewStarters, "Jo", "Smith"}).exit_code, 0);
    put_file(home() + "/a.txt", "text");
  }
  [[nodiscard]] std::string home() const { return lab() + "/servers/FS1/D/Users/Jo.Smith"; }
};

TEST_F(ExistingUsers, DryRunOfADeletionPrintsTheStepsAndDoesNothing) {
  const ProgramResult result = run({"user", "delete", "Jo.Smith", "--account", "--data", "--dry-run"});
  EXPECT_EQ(result.exit_code, 0) << result.err;
  EXPECT_EQ(result.out, "Delete the account LDAP://twk.test/CN=Jo.Smith," + kNewStarters +
                            "\n"
                            "Delete the folder \\\\FS1\\D$\\Users\\Jo.Smith with 1 file, 4 bytes\n"
                            "Delete the folder \\\\FS1\\D$\\Profiles\\Jo.Smith with 0 files, 0 bytes\n");
  EXPECT_TRUE(std::filesystem::exists(home() + "/a.txt"));
  EXPECT_EQ(run({"user", "show", "Jo.Smith"}).exit_code, 0);
}

TEST_F(ExistingUsers, AreDeletedWithTheirFolders) {
  const ProgramResult result =
      run({"--json", "user", "delete", "Jo.Smith", "--account", "--data", "--no-prompting"});
  EXPECT_EQ(result.exit_code, 0) << result.err;
  EXPECT_EQ(json_lines(result.out).at(0)["light"], "GREEN");
  EXPECT_FALSE(std::filesystem::exists(home()));
  EXPECT_EQ(run({"user", "show", "Jo.Smith"}).exit_code, 2);
}

TEST_F(ExistingUsers, StayWhenNobodyCanAnswer) {
  const ProgramResult result = run({"user", "delete", "Jo.Smith", "--account", "--data"});
  EXPECT_EQ(result.exit_code, 1);
  EXPECT_EQ(result.out, "YELLOW  Jo.Smith: nothing was done\n");
  EXPECT_TRUE(std::filesystem::exists(home() + "/a.txt"));
}

TEST_F(ExistingUsers, WhatToDeleteMustBeSaid) {
  for (const Arguments& arguments :
       {Arguments{"user", "delete", "Jo.Smith"},
        {"user", "delete", "Jo.Smith", "--account", "--take-ownership"},
        {"user", "delete", "Jo.Smith", "--mail"},
        {"user", "rename", "Jo.Smith"},
        {"profile", "delete", "Jo.Smith", "--workstation", "PC7"},
        {"user", "move", "Jo.Smith", "--site", "Head Office", "--template", "Staff", "--data", "all"}})
    EXPECT_EQ(run(arguments).exit_code, 64) << arguments.back();
  EXPECT_EQ(run({"user", "delete", "Nobody", "--account"}).exit_code, 2);
}

TEST_F(ExistingUsers, MoveToAnotherServer) {
  for (const char* const name : {"Users", "Profiles"})
    std::filesystem::create_directories(lab() + "/servers/FS2/D/" + name);
  ASSERT_EQ(run({"site", "add", "Branch", "--nt-server", "FS2"}).exit_code, 0);
  const Arguments move = {"user",       "move",  "Jo.Smith", "--site", "Branch",
                          "--template", "Staff", "--data",   "move",   "--no-prompt"};
  Arguments dry = move;
  dry.push_back("--dry-run");
  for (const Arguments& arguments : {dry, move}) {
    const ProgramResult refused = run(arguments);
    EXPECT_EQ(refused.exit_code, 2);
    EXPECT_THAT(refused.out,
                HasSubstr("RED  User Jo.Smith was not moved: FS2 has no share Profiles, to which "));
  }
  for (const char* const name : {"Users", "Profiles"})
    ASSERT_EQ(run({"share", "add", "FS2", name, std::string("D:\\") + name}).exit_code, 0);
  // The second one finds everything in place.
  for (int i = 0; i < 2; ++i) {
    const ProgramResult result = run(move);
    EXPECT_EQ(result.exit_code, 0) << result.err;
    EXPECT_TRUE(std::filesystem::exists(lab() + "/servers/FS2/D/Users/Jo.Smith/a.txt"));
    EXPECT_FALSE(std::filesystem::exists(home()));
  }
}

TEST_F(ExistingUsers, ARenamingIsRehearsedOrRefusedAsAWhole) {
  const ProgramResult steps = run({"user", "rename", "Jo.Smith", "--logon", "ann", "--full-name", "Ann West",
                                   "--rename-dirs", "--dry-run"});
  EXPECT_EQ(steps.exit_code, 0) << steps.err;
  EXPECT_THAT(steps.out, HasSubstr("samAccountName = ann"));
  EXPECT_THAT(steps.out, HasSubstr("Rename \\\\FS1\\D$\\Users\\Jo.Smith to \\\\FS1\\D$\\Users\\"));
  for (const char* const dry : {"--dry-run", "--rename-dirs"}) {
    const ProgramResult refused = run({"--json", "user", "rename", "Jo.Smith", "--logon", "a*b",
                                       "--full-name", "a*b", "--rename-dirs", dry});
    EXPECT_EQ(refused.exit_code, 2);
    EXPECT_THAT(json_lines(refused.out).at(0)["message"], HasSubstr("it holds the character *"));
  }
  const ProgramResult suffix = run({"user", "rename", "Jo.Smith", "--upn", "ann@nowhere.example"});
  EXPECT_EQ(suffix.exit_code, 64);
  EXPECT_THAT(suffix.err, HasSubstr("it has @twk.test"));
  EXPECT_EQ(result_of({"user", "show", "Jo.Smith"})["userPrincipalName"], "Jo.Smith@twk.test");
  EXPECT_TRUE(std::filesystem::exists(home() + "/a.txt"));
}

TEST_F(ExistingUsers, GetOtherNamesAndAnotherPassword) {
  const ProgramResult result = run({"user", "rename", "Jo.Smith", "--logon", "ann", "--full-name",
                                    "West, Ann", "--display", "", "--rename-dirs"});
  EXPECT_EQ(result.exit_code, 0) << result.err;
  const auto user = result_of({"user", "show", "ann"});
  EXPECT_EQ(user["dn"], "CN=West\\, Ann," + kNewStarters);
  EXPECT_EQ(user["fullName"], "");
  EXPECT_EQ(run({"--yes", "user", "reset-password", "ann"}).exit_code, 0);
  const ProgramResult refused = run({"--yes", "user", "reset-password", "ann", "--password-stdin"}, "x\n");
  EXPECT_EQ(refused.exit_code, 2);
  EXPECT_THAT(refused.out, HasSubstr("the password does not meet the domain's policy; choose a longer one"));
  EXPECT_EQ(run({"--yes", "profile", "delete", "ann"}).exit_code, 0);
  EXPECT_EQ(run({"--yes", "profile", "delete", "ann"}).exit_code, 2);
}

}  // namespace
}  // namespace twk::test
