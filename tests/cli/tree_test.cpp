#include "cli/twk_fixture.hpp"

namespace twk::test {
namespace {

using testing::HasSubstr;

class TreeCommandLine : public TwkLab {
 protected:
  void SetUp() override {
    ASSERT_EQ(run({"ou", "create", "Sales, \"North\""}).exit_code, 0);
    ASSERT_EQ(create({"--ou", kNewStarters, "John", "Smith"}).exit_code, 0);
  }
  const std::string sales = "OU=Sales\\, \\\"North\\\",DC=twk,DC=test";
};

TEST_F(TreeCommandLine, AnOuIsCreatedByNameOrByDistinguishedName) {
  EXPECT_EQ(run({"ou", "create", "Team+1", "--under", sales}).out, "GREEN  Team+1 Created OU\n");
  const nlohmann::json made = result_of({"ou", "create", "OU=Inner\\, 2,OU=Team\\+1," + sales});
  EXPECT_EQ(made["light"], "GREEN");
  EXPECT_EQ(made["message"], "Inner, 2 Created OU");
  const ProgramResult moved = run({"user", "move-ou", "John.Smith", "OU=Inner\\, 2,OU=Team\\+1," + sales});
  EXPECT_EQ(moved.exit_code, 0) << moved.err;
}

TEST_F(TreeCommandLine, AUserIsMovedAndFoundWhereItIs) {
  const std::string dn = "CN=John.Smith," + sales;
  const nlohmann::json moved = result_of({"user", "move-ou", "john.smith", sales});
  EXPECT_EQ(moved["light"], "GREEN");
  EXPECT_EQ(moved["dn"], dn);
  EXPECT_EQ(result_of({"user", "find", "n.sm"}), (nlohmann::json{{"name", "John.Smith"}, {"dn", dn}}));
  EXPECT_EQ(result_of({"user", "show", "John.Smith"})["dn"], dn);
}

TEST_F(TreeCommandLine, NobodyFoundIsReportedOnStandardError) {
  const ProgramResult none = run({"user", "find", "*)(cn=*"});
  EXPECT_EQ(none.exit_code, 0);
  EXPECT_EQ(none.out, "");
  EXPECT_THAT(none.err, HasSubstr("No user found"));
}

struct Refusal {
  const char* what;
  Arguments arguments;
  int exit_code;
  const char* message;
};

class RefusedTreeCommands : public TreeCommandLine, public testing::WithParamInterface<Refusal> {};

TEST_P(RefusedTreeCommands, SayWhy) {
  const ProgramResult result = run(GetParam().arguments);
  EXPECT_EQ(result.exit_code, GetParam().exit_code) << result.err;
  EXPECT_THAT(result.out + result.err, HasSubstr(GetParam().message));
}

INSTANTIATE_TEST_SUITE_P(
    Tree, RefusedTreeCommands,
    testing::Values(
        Refusal{"TakenOu", {"ou", "create", "new starters"}, 2, "Cannot create the OU new starters"},
        Refusal{"BlankOu", {"ou", "create", "  "}, 2, "cannot be blank"},
        Refusal{
            "OuUnderNothing", {"ou", "create", "A", "--under", "OU=Salse,DC=twk,DC=test"}, 2, "There is no"},
        Refusal{"OuUnderTwice",
                {"ou", "create", "OU=A,DC=twk,DC=test", "--under", "DC=twk,DC=test"},
                64,
                "--under"},
        Refusal{"UnknownUser", {"user", "move-ou", "John.Smiht", kNewStarters}, 2, "John.Smith"},
        Refusal{"UnknownOu", {"user", "move-ou", "John.Smith", "OU=Nowhere"}, 2, "OU=Nowhere"},
        Refusal{
            "NoOu", {"user", "move-ou", "John.Smith", "DC=twk,DC=test"}, 2, "is not an organizational unit"},
        Refusal{"SameOu", {"user", "move-ou", "John.Smith", kNewStarters}, 2, "was not moved"},
        Refusal{"UnknownOption", {"options", "set", "PagSize=1"}, 2, "Near: \"PageSize\""},
        Refusal{"NoValue", {"options", "set", "PageSize"}, 64, "NAME=VALUE"},
        Refusal{"NoNumber", {"options", "set", "UserLimit=0"}, 64, "a number from 1 up"},
        Refusal{"NoFlag", {"options", "set", "Sort=maybe"}, 64, "true or false"}),
    [](const auto& refusal) { return refusal.param.what; });

TEST_F(TreeCommandLine, OptionsThatAreSetAreShown) {
  const ProgramResult set =
      run({"options", "set", "pagesize=500", "Search=ldap", "LoadAllUsers=yes", "Sort=False"});
  EXPECT_EQ(set.exit_code, 0) << set.err;
  const nlohmann::json expected = {
      {"pageSize", 500},      {"userLimit", 99999},          {"skipUsers", false},  {"skipGroups", false},
      {"loadAllUsers", true}, {"templateGroupsOnly", false}, {"search", "LDAP://"}, {"sort", false}};
  EXPECT_EQ(result_of({"options", "show"}), expected);
  EXPECT_EQ(result_of({"options", "set", "PageSize="})["pageSize"], 1000);
}

class TreeCommandLineInNt : public TwkLab {
 protected:
  static void SetUpTestSuite() { make("nt"); }
};

TEST_F(TreeCommandLineInNt, HasUsersToFindAndNoOus) {
  ASSERT_EQ(create({"John", "Smith"}).exit_code, 0);
  EXPECT_THAT(run({"user", "find", "JOHN"}).out, HasSubstr("John.Smith"));
  EXPECT_EQ(run({"ou", "create", "Sales"}).exit_code, 2);
  EXPECT_THAT(run({"user", "move-ou", "John.Smith", "OU=Sales"}).err,
              HasSubstr("A WinNT domain has no organizational units."));
}

}  // namespace
}  // namespace twk::test
