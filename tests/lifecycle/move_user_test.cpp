#include "lifecycle/move_world.hpp"
#include "lifecycle/trees/folder_use.hpp"

namespace twk::lifecycle {
namespace {

using testing::HasSubstr;

class MoveUser : public testing::TestWithParam<DomainKind>, public MoveWorld {
 protected:
  MoveUser() : MoveWorld(GetParam()) {}
};
INSTANTIATE_TEST_SUITE_P(Kinds, MoveUser,
                         testing::Values(DomainKind::kNative, DomainKind::kMixed, DomainKind::kNt),
                         test::kind_name);

TEST_P(MoveUser, DataSharesAndAccountGoToTheNewServer) {
  start_at_own_shares(kMoveData);
  session.multi_user.Add_to_Groups.value = 1;
  session.multi_user.Change_Logon.value = 1;
  session.multi_user.Run_CMD.value = 1;
  EXPECT_EQ(move(), Moved::kWholly);
  EXPECT_EQ(tree("FS1/D"), kEmpty);
  EXPECT_EQ(tree("FS2/D"), kWhole);
  EXPECT_EQ(shares("FS1"), Names());
  EXPECT_EQ(shares("FS2"), (Names{"jo$", "jo.prf$"}));
  EXPECT_EQ(property("jo", "HomeDirectory"), "\\\\FS2\\jo$");
  EXPECT_EQ(property("jo", "Profile"), "\\\\FS2\\jo.prf$");
  EXPECT_EQ(property("jo", is_nt() ? "HomeDirDrive" : "HomeDrive"), "H:");
  EXPECT_EQ(property("jo", "LoginScript"), "staff.cmd");
  EXPECT_THAT(groups_of("jo"), testing::Contains(is_nt() ? "Staff" : "CN=Staff"));
  EXPECT_THAT(process.commands,
              testing::ElementsAre(testing::ElementsAre("moved.cmd", session.DomainName, "FS2", "jo")));
  EXPECT_THAT(log_tab(), testing::ElementsAre("GREEN  jo Moved"));
}

TEST_P(MoveUser, WithoutDataIsReportedInYellow) {
  start_at("", "", kMoveData);
  EXPECT_EQ(move(), kWarned);
  EXPECT_THAT(log_tab(),
              testing::ElementsAre(
                  "YELLOW  jo Moved: No data was moved: the account has neither a home nor a profile"));
}

TEST_P(MoveUser, ProfilesThatAreNotTheUsersStayWhereTheyAre) {
  const std::pair<const char*, const char*> cases[] = {
      {"\\\\FS1\\jo.prf$\\nt.man", "Unable to Move Mandatory Profiles.\n"},
      {"\\\\FS1\\jo.prf$\\nt.MAN\\ ", "Unable to Move Mandatory Profiles.\n"},
      {"\\\\FS1\\NetLogon\\jo", "Unable to Move Profile From NETLOGON directory.\n"},
      {"%LOGONSERVER%\\jo", "Unable to Move Profile From %LOGONSERVER%.\n"}};
  for (const auto& [profile, log] : cases) {
    SCOPED_TRACE(profile);
    MoveWorld world(GetParam());
    world.put("FS1/D/Profiles/jo/nt.man/f");
    world.start_at(kOldHome, profile, kMoveData);
    EXPECT_EQ(world.move(), kWarned);
    EXPECT_TRUE(world.there("FS1/D/Profiles/jo/nt.man/f"));
    EXPECT_FALSE(world.there("FS1/D/Users/jo"));
    EXPECT_EQ(world.property("jo", "Profile"), "\\\\FS2\\jo.prf$");
    EXPECT_THAT(world.log(), HasSubstr(log));
  }
}

TEST_P(MoveUser, MoveToWhereTheUserIsTouchesNothing) {
  for (const char* const home : {"\\\\FS1\\Users\\jo", "\\\\FS1\\D$\\Users\\jo", "\\\\fs1\\Users2\\jo"}) {
    SCOPED_TRACE(home);
    MoveWorld world(GetParam());
    world.site.NTServer = "FS1";
    world.staff.HomeDir = "\\\\%Server%\\Users\\%UserName%";
    world.staff.HomeShare = world.staff.ProfileShare = "";
    world.staff.ProfileDirPath = world.staff.ProfilePath = "";
    for (const char* const share : {"jo$", "jo.prf$"})
      world.services.network.NetShareDel("FS1", share);
    world.share("FS1", "Users", "D:\\Users");
    world.share("FS1", "Users2", "D:\\Users");
    world.start_at(home, "", kMoveData);
    EXPECT_EQ(world.move(), kMoved);
    EXPECT_EQ(world.tree("FS1/D"), kWhole);
    EXPECT_EQ(world.property("jo", "HomeDirectory"), "\\\\FS1\\Users\\jo");
  }
}

/// A different file of the same name in the target.
TEST_P(MoveUser, FilesOfTheTargetAreReplacedWhenThePersonAgrees) {
  for (const bool yes : {true, false}) {
    MoveWorld world(GetParam());
    world.put("FS2/D/Users/jo/a.txt", "older");
    world.start_at_own_shares(kMoveData);
    world.session.multi_user.No_Prompt.value = 0;
    world.dialogs.expect("Home Dir \\\\FS2\\D$\\Users\\jo Already Exist", platform::Answer::kYes);
    world.dialogs.expect("already contains a file named\r\n\\\\FS2\\jo$\\a.txt",
                         yes ? platform::Answer::kYes : platform::Answer::kNo);
    if (!yes)
      world.dialogs.expect("Give jo the new paths anyway?", platform::Answer::kNo);
    EXPECT_EQ(world.move(), yes ? kMoved : kNotMoved);
    EXPECT_EQ(world.dialogs.last_icon, yes ? platform::Icon::kQuestion : platform::Icon::kExclamation);
    EXPECT_EQ(test::get_file(world.server_folder("FS2/D/Users/jo/a.txt").string()), yes ? "aaaa" : "older");
    EXPECT_EQ(world.there("FS1/D/Users/jo/a.txt"), !yes);
    EXPECT_EQ(world.property("jo", "HomeDirectory"), yes ? kNewHome : kOldHome);
  }
}

/// Two users who are moved to one folder in a run: the first one's files are not replaced.
TEST_P(MoveUser, FilesOfAnotherUserInOneFolderAreNeverReplaced) {
  for (const session::Consent consent : {session::Consent::kNo, session::Consent::kYes}) {
    MoveWorld world(GetParam());
    world.staff.HomeDir = "\\\\%Server%\\Common";
    world.staff.HomeShare = "Common";
    world.staff.HomeDirPath = "D:\\Users\\Common";
    world.staff.ProfileDirPath = world.staff.ProfilePath = world.staff.ProfileShare = "";
    world.put("FS1/D/Users/ann/a.txt", "ann's");
    world.share("FS1", "ann$", "D:\\Users\\ann");
    world.add_user("ann", "\\\\FS1\\ann$");
    world.start_at(kOldHome, "", kMoveData);
    world.terms.even_if_shared = consent;
    const KnownFolders known(world.session);
    EXPECT_EQ(world.move(), kMoved);
    EXPECT_EQ(
        world.move_of(world.is_nt() ? "ann" : "LDAP://twk.test/CN=ann," + std::string(test::kNewStarters)),
        kNotMoved);
    EXPECT_THAT(world.log_tab().back(),
                HasSubstr(consent == session::Consent::kNo ? "is not one account's own"
                                                           : "a.txt already exists and is a different file"));
    EXPECT_EQ(test::get_file(world.server_folder("FS2/D/Users/Common/a.txt").string()), "aaaa");
    EXPECT_EQ(test::get_file(world.server_folder("FS1/D/Users/ann/a.txt").string()), "ann's");
    EXPECT_EQ(world.shares("FS1"), (Names{"ann$", "jo.prf$"}));
  }
}

TEST(MoveOwners, FilesKeepTheirOwners) {
  MoveWorld world(DomainKind::kNative);
  world.start_at_own_shares(kMoveData);
  platform::Security& security = world.services.security;
  constexpr std::uint32_t kOwner = platform::security_information::kOwner;
  platform::SecurityDescriptor jo;
  jo.owner = security.LookupAccountName("", "jo").sid;
  const auto token = security.OpenProcessToken();
  const std::uint64_t restore = security.LookupPrivilegeValue(platform::privilege::kRestore);
  token->AdjustTokenPrivileges(restore, true);
  for (const char* const path : {"a.txt", "Mail", "Mail\\b.txt"})
    security.SetFileSecurity("\\\\FS1\\jo$\\" + std::string(path), kOwner, jo);
  token->AdjustTokenPrivileges(restore, false);
  EXPECT_EQ(world.move(), kMoved);
  for (const char* const path : {"a.txt", "Mail", "Mail\\b.txt"})
    EXPECT_EQ(security.GetFileSecurity("\\\\FS2\\jo$\\" + std::string(path), kOwner, 4096).owner, jo.owner)
        << path;
}

TEST_P(MoveUser, RehearsalReportsTheStepsInOrderAndChangesNothing) {
  put("FS2/D/Users/jo/a.txt", "older");
  start_at_own_shares(kMoveData);
  const auto [steps, outcome] = rehearse();
  EXPECT_EQ(outcome, kMoved);
  std::size_t next = 0;
  for (const char* const text :
       {"Make the folder \\\\FS2\\D$\\Profiles\\jo", "Make the share jo.prf$ on FS2",
        "Make the share jo$ on FS2", "Copy what \\\\FS1\\jo.prf$ holds to \\\\FS2\\jo.prf$: 1 file, ",
        "Copy what \\\\FS1\\jo$ holds to \\\\FS2\\jo$: 2 files, 7 bytes, replacing 1",
        "Remove what \\\\FS1\\jo.prf$ holds", "lanmanserver/jo.prf$",
        "Remove the folder \\\\FS1\\D$\\Profiles\\jo", "Remove what \\\\FS1\\jo$ holds", "lanmanserver/jo$",
        "Remove the folder \\\\FS1\\D$\\Users\\jo", "HomeDirectory = \\\\FS2\\jo$"}) {
    while (next < steps.size() && steps[next].find(text) == base::npos)
      ++next;
    EXPECT_LT(next, steps.size()) << text << " in " << testing::PrintToString(steps);
  }
  EXPECT_EQ(tree("FS1/D"), kWhole);
  EXPECT_EQ(tree("FS2/D"), (Names{"Users/", "Users/jo/", "Users/jo/a.txt", "Profiles/"}));
  EXPECT_EQ(shares("FS1"), kOldShares);
  EXPECT_EQ(property("jo", "HomeDirectory"), kOldHome);
}

}  // namespace
}  // namespace twk::lifecycle
