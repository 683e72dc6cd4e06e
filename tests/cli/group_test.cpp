#include "cli/twk_fixture.hpp"

namespace twk::test {
namespace {

using testing::ElementsAre;
using testing::HasSubstr;
using testing::IsEmpty;

/// What a line of JSON says of a user or a group.
std::vector<std::string> values(const std::string& out, const char* key) {
  std::vector<std::string> all;
  for (const nlohmann::json& line : json_lines(out))
    all.push_back(line.value(key, ""));
  return all;
}

class GroupCommands : public TwkLab {
 protected:
  explicit GroupCommands(const Arguments& place = {"--ou", kNewStarters}) {
    for (const char* const name : {"Ann", "Bob"}) {
      Arguments arguments = place;
      arguments.insert(arguments.end(), {name, "", "Marsh"});
      EXPECT_EQ(create(arguments).exit_code, 0);
    }
    EXPECT_EQ(run({"group", "create", "Drivers", "--description", "Who drive"}).exit_code, 0);
  }
  ProgramResult json(Arguments arguments) const {
    arguments.insert(arguments.begin(), {"--json", "group"});
    return run(arguments);
  }
  std::vector<std::string> members(const std::string& group) const {
    return values(json({"members", group}).out, "name");
  }
};

TEST_F(GroupCommands, CreateMakesAGroupOfTheKindAndScope) {
  const nlohmann::json made = result_of({"group", "show", "Drivers"});
  EXPECT_EQ(made["kind"], "security");
  EXPECT_EQ(made["scope"], "global");
  EXPECT_EQ(made["description"], "Who drive");
  EXPECT_EQ(made["dn"], "CN=Drivers,CN=Users,DC=twk,DC=test");
  const ProgramResult other =
      run({"group", "create", "R&D (x)", "--scope", "domain-local", "--kind", "distribution"});
  EXPECT_EQ(other.exit_code, 0) << other.err;
  EXPECT_EQ(other.out, "GREEN  Added group R&D (x)\n");
  EXPECT_EQ(result_of({"group", "show", "R&D (x)"})["scope"], "domain local");
  EXPECT_EQ(result_of({"group", "show", "R&D (x)"})["kind"], "distribution");
}

TEST_F(GroupCommands, CreateReportsRefusals) {
  const ProgramResult again = json({"create", "Drivers"});
  EXPECT_EQ(again.exit_code, 2);
  EXPECT_THAT(values(again.out, "light"), ElementsAre("RED"));
  EXPECT_THAT(again.err, HasSubstr("Error Adding Group:"));
  EXPECT_EQ(run({"group", "create", "  "}).exit_code, 2);
  EXPECT_EQ(run({"group", "create", "a=b"}).exit_code, 2);
  EXPECT_EQ(run({"group", "create", "Late", "--scope", "world"}).exit_code, 64);
  EXPECT_EQ(run({"group", "create"}).exit_code, 64);
}

TEST_F(GroupCommands, MembersMarksThoseByPrimaryGroup) {
  const ProgramResult everybody = json({"members", "domain users"});
  EXPECT_EQ(everybody.exit_code, 0) << everybody.err;
  bool found = false;
  for (const nlohmann::json& user : json_lines(everybody.out)) {
    found = found || user["name"] == "Ann.Marsh";
    EXPECT_EQ(user["primary"], true) << user;
  }
  EXPECT_TRUE(found) << everybody.out;
  EXPECT_EQ(run({"group", "add-member", "Drivers", "Ann.Marsh"}).exit_code, 0);
  const ProgramResult drivers = json({"members", "Drivers"});
  EXPECT_EQ(drivers.out,
            "{\"name\":\"Ann.Marsh\",\"primary\":false,\"dn\":\"CN=Ann.Marsh," + kNewStarters + "\"}\n");
  EXPECT_EQ(run({"group", "members", "Nothing"}).exit_code, 2);
  EXPECT_THAT(run({"group", "members", "Driver"}).err, HasSubstr("Near: \"Drivers\""));
}

TEST_F(GroupCommands, MembersAreListedWhateverTheLoadLeavesOut) {
  ASSERT_EQ(run({"settings", "set", "ADO", "SkipUsers", "TRUE"}).exit_code, 0);
  ASSERT_EQ(run({"settings", "set", "ADO", "SkipGroups", "TRUE"}).exit_code, 0);
  EXPECT_EQ(run({"group", "add-member", "Drivers", "Ann.Marsh"}).exit_code, 0);
  EXPECT_THAT(members("Drivers"), ElementsAre("Ann.Marsh"));
  EXPECT_EQ(run({"settings", "get", "ADO", "SkipUsers"}).out, "TRUE\n") << "the setting itself stays";
}

TEST_F(GroupCommands, AUserWhoCannotBeAddedStopsNobodyElse) {
  const ProgramResult result =
      json({"add-member", "Drivers", "Nobody", "Ann.Marsh", "bob.marsh", "Ann.Marsh"});
  EXPECT_EQ(result.exit_code, 2);
  EXPECT_THAT(values(result.out, "light"), ElementsAre("RED", "GREEN", "GREEN"));
  EXPECT_THAT(values(result.out, "user"), ElementsAre("Nobody", "Ann.Marsh", "bob.marsh"));
  EXPECT_THAT(members("Drivers"), ElementsAre("Ann.Marsh", "Bob.Marsh"));
  const ProgramResult again = json({"add-member", "Drivers", "Ann.Marsh"});
  EXPECT_EQ(again.exit_code, 1);
  EXPECT_THAT(values(again.out, "message"), ElementsAre("Ann.Marsh is a member already."));

  EXPECT_EQ(run({"group", "remove-member", "Drivers", "Ann.Marsh"}).out,
            "GREEN  Ann.Marsh removed from Drivers.\n");
  const ProgramResult gone = json({"remove-member", "Drivers", "Ann.Marsh", "Bob.Marsh"});
  EXPECT_EQ(gone.exit_code, 1);
  EXPECT_THAT(values(gone.out, "light"), ElementsAre("YELLOW", "GREEN"));
  EXPECT_THAT(members("Drivers"), IsEmpty());
}

TEST_F(GroupCommands, APrimaryGroupIsNotLeft) {
  const ProgramResult result = run({"group", "remove-member", "Domain Users", "Ann.Marsh"});
  EXPECT_EQ(result.exit_code, 1);
  EXPECT_EQ(result.out, "YELLOW  Ann.Marsh: it is their primary Group\n");
  EXPECT_THAT(result.err, HasSubstr("Can't remove user 'Ann.Marsh' from 'Domain Users'"));
}

TEST_F(GroupCommands, DeleteAsksFirst) {
  const ProgramResult unasked = run({"group", "delete", "Drivers"});
  EXPECT_EQ(unasked.exit_code, 1);
  EXPECT_THAT(unasked.err, HasSubstr("Sure to Delete Global Group Drivers"));
  EXPECT_EQ(run({"group", "show", "Drivers"}).exit_code, 0);
  const ProgramResult deleted = run({"--yes", "group", "delete", "drivers"});
  EXPECT_EQ(deleted.exit_code, 0) << deleted.err;
  EXPECT_EQ(deleted.out, "GREEN  Deleted group Drivers\n");
  EXPECT_EQ(run({"group", "show", "Drivers"}).exit_code, 2);
  const ProgramResult refused = run({"--yes", "group", "delete", "Domain Users"});
  EXPECT_EQ(refused.exit_code, 2);
  EXPECT_THAT(refused.err, HasSubstr("Error Deleting Group"));
  EXPECT_THAT(refused.out, HasSubstr("RED  Error Deleting Group Domain Users: "));
}

TEST_F(GroupCommands, CopyReportsEachUserAndTheSum) {
  ASSERT_EQ(run({"group", "add-member", "Drivers", "Ann.Marsh", "Bob.Marsh"}).exit_code, 0);
  ASSERT_EQ(run({"group", "create", "Pilots"}).exit_code, 0);
  ASSERT_EQ(run({"group", "add-member", "Pilots", "Bob.Marsh"}).exit_code, 0);
  EXPECT_EQ(run({"group", "copy", "Drivers", "Pilots"}).exit_code, 1) << "nobody agreed";
  EXPECT_THAT(members("Pilots"), ElementsAre("Bob.Marsh"));
  const ProgramResult copied = run({"--yes", "--json", "group", "copy", "Drivers", "Pilots"});
  EXPECT_EQ(copied.exit_code, 1) << copied.err;
  const auto lines = json_lines(copied.out);
  ASSERT_EQ(lines.size(), 3U) << copied.out;
  EXPECT_EQ(lines[2]["message"], "2 of 2 users: 1 added, 1 already members, 0 refused.");
  EXPECT_EQ(lines[2]["light"], "YELLOW");
  EXPECT_THAT(members("Pilots"), ElementsAre("Ann.Marsh", "Bob.Marsh"));
  EXPECT_EQ(run({"--yes", "group", "copy", "Drivers", "Nothing"}).exit_code, 2);
}

class GroupCommandsOfAnNtDomain : public GroupCommands {
 protected:
  GroupCommandsOfAnNtDomain() : GroupCommands(Arguments{}) {}
  static void SetUpTestSuite() { make("nt"); }
};

TEST_F(GroupCommandsOfAnNtDomain, HaveOnlyGlobalGroups) {
  EXPECT_EQ(result_of({"group", "show", "Drivers"})["scope"], "global");
  EXPECT_EQ(run({"group", "create", std::string(20, 'a')}).exit_code, 0);
  const ProgramResult longer = run({"group", "create", std::string(21, 'b')});
  EXPECT_EQ(longer.exit_code, 2);
  EXPECT_THAT(longer.err, HasSubstr("max 20 Chrs"));
  const ProgramResult local = run({"group", "create", "Locals", "--scope", "domain-local"});
  EXPECT_EQ(local.exit_code, 2);
  EXPECT_THAT(local.err, HasSubstr("has no domain-local groups"));
}

TEST_F(GroupCommandsOfAnNtDomain, ChangeMembersByTheirNames) {
  EXPECT_EQ(run({"group", "add-member", "Drivers", "Ann.Marsh", "Bob.Marsh"}).exit_code, 0);
  const ProgramResult listed = json({"members", "Drivers"});
  EXPECT_EQ(json_lines(listed.out).at(0),
            nlohmann::json({{"name", "Ann.Marsh"}, {"primary", nullptr}, {"dn", ""}}));
  const ProgramResult onto_itself = run({"--yes", "group", "copy", "Drivers", "Drivers"});
  EXPECT_EQ(onto_itself.exit_code, 1);
  EXPECT_THAT(onto_itself.out, HasSubstr("YELLOW  Ann.Marsh User already a member.\n"));
  EXPECT_EQ(run({"--yes", "group", "delete", "Drivers"}).exit_code, 0);
}

}  // namespace
}  // namespace twk::test
