#include "lifecycle/deletion/delete_user.hpp"

#include "lifecycle/delete_world.hpp"
#include "platform/acl.hpp"

namespace twk::lifecycle {
namespace {

using testing::HasSubstr;

class DeleteUser : public testing::TestWithParam<DomainKind> {};
INSTANTIATE_TEST_SUITE_P(Kinds, DeleteUser, kKinds, test::kind_name);

const Names kWithoutJo = {"Users/", "Users/ann/", "Users/ann/c.txt", "Profiles/"};

TEST_P(DeleteUser, SharesAccountAndFoldersGoInThisOrder) {
  LifecycleWorld world(GetParam());
  give_own_shares(world);
  world.start_with("\\\\FS1\\jo$", "\\\\FS1\\jo.prf$");
  world.node();
  tick_all(world);
  EXPECT_TRUE(world.delete_jo());
  EXPECT_FALSE(world.has_jo());
  EXPECT_EQ(world.shares("FS1"), Names());
  EXPECT_EQ(world.tree("FS1/D"), kWithoutJo);
  EXPECT_EQ(world.session.form1.TreeView1.find(world.key()), nullptr);
  const std::string name = world.is_nt() ? "jo" : "Jo Smith";
  EXPECT_THAT(world.log(), HasSubstr("User:admin\nDelete User: " + world.key() +
                                     "\nFrom Server: FS1\nHome Share: jo$\n"
                                     "Home Dir Path :\\\\FS1\\D$\\Users\\jo\n"
                                     "Profile Server: FS1\nProfile ShareName: jo.prf$\n"
                                     "Profile Dir Path :\\\\FS1\\D$\\Profiles\\jo\n"
                                     "Deleted Share: jo$\nDeleted Share: jo.prf$\n"
                                     "Deleted User Account: " +
                                     name +
                                     "\nDeleted Dir: \\\\FS1\\D$\\Users\\jo\n"
                                     "Deleted Dir: \\\\FS1\\D$\\Profiles\\jo\nUser Deleted.\n"));
  EXPECT_THAT(world.log_tab(), testing::ElementsAre("GREEN  User " + name + " deleted."));
}

TEST_P(DeleteUser, WithoutAdministrativeSharesTheFolderIsReachedThroughAShareAbove) {
  LifecycleWorld world(GetParam());
  give_own_shares(world);
  world.share("FS1", "Users", "D:\\Users");
  world.set("Preferences", "AdminShares", "No");
  world.start_with("\\\\FS1\\jo$", "");
  tick_all(world);
  EXPECT_TRUE(world.delete_jo());
  EXPECT_THAT(world.log(), HasSubstr("Home Dir Path :\\\\FS1\\"));
  EXPECT_FALSE(world.there("FS1/D/Users/jo"));
  EXPECT_TRUE(world.there("FS1/D/Users/ann/c.txt"));
  EXPECT_EQ(world.shares("FS1"), (Names{"Users", "jo.prf$"}));
}

TEST_P(DeleteUser, FolderThatOthersUseGoesWhenThePersonSaysSoInThatVeryQuestion) {
  for (const platform::Answer answer : {platform::Answer::kNo, platform::Answer::kYes}) {
    LifecycleWorld world(GetParam());
    give_own_shares(world);
    world.add_user("ann", "\\\\FS1\\jo$\\ann");
    world.start_with("\\\\FS1\\jo$", "");
    tick_all(world);
    world.session.multi_user.No_Prompting.value = 0;
    world.dialogs.expect("the home of ann (\\\\FS1\\jo$\\ann).\r\n\r\nContinue anyway?", answer);
    if (answer == platform::Answer::kYes)
      world.dialogs.expect("remove the folder 'jo' and all its contents?", platform::Answer::kYes);
    EXPECT_EQ(world.delete_jo(), answer == platform::Answer::kYes);
    EXPECT_EQ(world.there("FS1/D/Users/jo"), answer == platform::Answer::kNo);
  }
}

TEST_P(DeleteUser, LinkInTheTreeGoesAndWhatItLeadsToStays) {
  LifecycleWorld world(GetParam());
  give_own_shares(world);
  world.put("FS2/D/Users/outside.txt");
  std::filesystem::create_directory_symlink(world.server_folder("FS2/D/Users"),
                                            world.server_folder("FS1/D/Users/jo/Mail/out"));
  std::filesystem::create_symlink(world.server_folder("FS1/D/Users/ann/c.txt"),
                                  world.server_folder("FS1/D/Users/jo/file"));
  world.start_with("\\\\FS1\\jo$", "");
  tick_all(world);
  world.delete_jo();
  EXPECT_FALSE(world.there("FS1/D/Users/jo"));
  EXPECT_TRUE(world.there("FS2/D/Users/outside.txt"));
  EXPECT_TRUE(world.there("FS1/D/Users/ann/c.txt"));
}

TEST_P(DeleteUser, EachShareIsDeletedOnItsOwnServer) {
  LifecycleWorld world(GetParam());
  give_own_shares(world);
  world.put("FS2/D/Profiles/jo/NTUser.dat");
  world.put("FS2/D/Dept/plan.txt");
  world.share("FS2", "jo.prf$", "D:\\Profiles\\jo");
  world.share("FS2", "jo$", "D:\\Dept");
  world.start_with("\\\\FS1\\jo$", "\\\\FS2\\jo.prf$");
  tick_all(world);
  EXPECT_TRUE(world.delete_jo());
  EXPECT_EQ(world.shares("FS1"), Names{"jo.prf$"});
  EXPECT_EQ(world.shares("FS2"), Names{"jo$"});
  EXPECT_FALSE(world.there("FS1/D/Users/jo"));
  EXPECT_FALSE(world.there("FS2/D/Profiles/jo"));
  EXPECT_TRUE(world.there("FS2/D/Dept/plan.txt"));
  EXPECT_THAT(world.log_tab().back(), testing::StartsWith("GREEN"));
}

TEST_P(DeleteUser, FolderThatIsClosedToAdministratorsIsDeletedOnceOwnershipIsTaken) {
  for (const bool take : {false, true}) {
    LifecycleWorld world(GetParam());
    give_own_shares(world);
    world.start_with("\\\\FS1\\jo$", "");
    platform::SecurityDescriptor closed;
    closed.set_dacl(platform::Acl(8));
    world.services.security.SetFileSecurity("\\\\FS1\\D$\\Users\\jo", platform::security_information::kDacl,
                                            closed);
    tick_all(world);
    world.session.multi_user.Del_Permissions.value = take ? 1 : 0;
    EXPECT_EQ(world.delete_jo(), take);
    EXPECT_EQ(world.has_jo(), !take);
    EXPECT_EQ(world.there("FS1/D/Users/jo/a.txt"), !take) << world.log();
    EXPECT_THAT(world.log(), HasSubstr(take ? "Deleted Dir: " : "cannot be opened"));
  }
}

TEST_P(DeleteUser, NothingHappensAfterAnAnswerOfNo) {
  LifecycleWorld world(GetParam());
  give_own_shares(world);
  world.start_with("\\\\FS1\\jo$", "");
  tick_all(world);
  world.session.form1.Confirm_Deletes.value = 1;
  world.session.multi_user.No_Prompting.value = 0;
  world.dialogs.expect("Delete User " + world.key(), platform::Answer::kNo);
  EXPECT_FALSE(world.delete_jo());
  EXPECT_EQ(world.log(), "");
  EXPECT_EQ(world.tree("FS1/D"), kAll);
  EXPECT_TRUE(world.has_jo());
}

TEST_P(DeleteUser, QuestionsBeforeFoldersMayBeDeclined) {
  LifecycleWorld world(GetParam());
  give_own_shares(world);
  world.start_with("\\\\FS1\\jo$", "\\\\FS1\\jo.prf$");
  tick_all(world);
  world.session.multi_user.Del_Permissions.value = 1;
  world.session.multi_user.No_Prompting.value = 0;
  world.dialogs.expect("Taking Ownership and changing permissions on: \r\n\\\\FS1\\D$\\Users\\jo",
                       platform::Answer::kNo);
  world.dialogs.expect("remove the folder 'jo' and all its contents?", platform::Answer::kNo);
  world.dialogs.expect("Taking Ownership and changing Permissions on: ", platform::Answer::kYes);
  world.dialogs.expect("\\\\FS1\\D$\\Profiles\\jo\r\n1 file, 4 bytes", platform::Answer::kYes);
  EXPECT_TRUE(world.delete_jo());
  Names left = kAll;
  left.erase("Profiles/jo/");
  left.erase("Profiles/jo/NTUser.dat");
  EXPECT_EQ(world.tree("FS1/D"), left);
  EXPECT_THAT(world.log(), HasSubstr("Error Deleting: \\\\FS1\\D$\\Users\\jo\n"));
}

TEST_P(DeleteUser, AccountMayBeKeptAndOnlyTheCommandRun) {
  LifecycleWorld world(GetParam());
  give_own_shares(world);
  world.set("Setup", "BatchFileDelete", "gone.cmd %Domain% %UserName%");
  world.start_with("\\\\FS1\\jo$", "");
  world.session.multi_user.Run_command.value = 1;
  world.process.result = {0, "nothing there"};
  EXPECT_TRUE(world.delete_jo());
  EXPECT_EQ(world.tree("FS1/D"), kAll);
  EXPECT_THAT(world.process.commands,
              testing::ElementsAre(testing::ElementsAre("gone.cmd", world.is_nt() ? "TWK" : "twk.test", "")));
  EXPECT_THAT(world.log(), HasSubstr("Not Deleting User NT account\nRunning Script: gone.cmd"));
  EXPECT_THAT(world.log(), HasSubstr("Error Running: gone.cmd"));
  EXPECT_THAT(world.log(), HasSubstr("Delete Function Completed.\n"));
  EXPECT_EQ(world.log_tab().back(),
            std::string(world.is_nt() ? "YELLOW  User jo deleted."
                                      : "YELLOW  User Jo Smith delete function completed.") +
                ": Error Running: gone.cmd " + world.session.DomainName + " \"\": nothing there");
}

TEST_P(DeleteUser, UndecidedMailboxKeepsTheAccountEvenInARehearsal) {
  for (const bool rehearsed : {false, true}) {
    for (const char* const server : {"EX98", "EX99"}) {
      LifecycleWorld world(GetParam());
      world.site.ExchangeServer = "EX98";
      world.start_with("", "");
      tick_all(world);
      world.session.multi_user.Delete_Mail.value = 1;
      world.session.multi_user.EX_Server.text = std::string(server);
      if (rehearsed)
        world.terms.rehearse = [](const std::string& step) { ADD_FAILURE() << step; };
      EXPECT_FALSE(world.delete_jo());
      EXPECT_TRUE(world.has_jo());
      EXPECT_THAT(world.log_tab(), ElementsAre(testing::StartsWith("RED  Nothing Deleted of ")));
    }
  }
}

TEST_P(DeleteUser, RefusedMailboxIsReportedAndTheAccountDeleted) {
  LifecycleWorld world(GetParam());
  world.start_with("", "");
  tick_all(world);
  world.session.multi_user.Delete_Mail.value = 1;
  world.session.multi_user.EX_Server.text = std::string("exchange 2000");
  EXPECT_TRUE(world.delete_jo());
  EXPECT_THAT(world.log(), HasSubstr("Failed to delete mail account\n"));
  EXPECT_THAT(world.log_tab().at(0),
              testing::StartsWith("RED Failed to delete mail account for jo: No mailbox"));
  EXPECT_THAT(world.log_tab().at(1), testing::StartsWith("YELLOW"));
}

TEST(DeleteNtUser, ProfileIsCutAtTheFolderOfTheUserAndOfNoOther) {
  const struct {
    const char* profile;
    Names left;
  } cases[] = {{"\\\\FS1\\Profiles\\jo\\nt\\deep", {"Profiles/", "Profiles/joanna/", "Profiles/joanna/x"}},
               {"\\\\FS1\\Profiles\\joanna\\x",
                {"Profiles/", "Profiles/jo/", "Profiles/jo/nt/", "Profiles/jo/nt/deep/",
                 "Profiles/jo/nt/deep/f", "Profiles/joanna/"}}};
  for (const auto& one : cases) {
    LifecycleWorld world(DomainKind::kNt);
    world.put("FS1/D/Profiles/jo/nt/deep/f");
    std::filesystem::create_directories(world.server_folder("FS1/D/Profiles/joanna/x"));
    if (std::string_view(one.profile).find("deep") != base::npos) {
      std::filesystem::remove(world.server_folder("FS1/D/Profiles/joanna/x"));
      world.put("FS1/D/Profiles/joanna/x");
    }
    world.share("FS1", "Profiles", "D:\\Profiles");
    world.set("Preferences", "ProfileDeleteUsername", "Yes");
    world.start_with("", one.profile);
    tick_all(world);
    EXPECT_TRUE(world.delete_jo());
    Names left = world.tree("FS1/D");
    left.erase("Users/");
    EXPECT_EQ(left, one.left) << world.log();
  }
}

TEST(DeleteNtUser, ProfileOfAnAccountThatIsKeptIsCutToNothing) {
  LifecycleWorld world(DomainKind::kNt);
  world.put("FS1/D/Profiles/jo/f");
  world.share("FS1", "Profiles", "D:\\Profiles");
  world.set("Preferences", "ProfileDeleteUsername", "Yes");
  world.start_with("", "\\\\FS1\\Profiles\\jo");
  tick_all(world);
  world.session.multi_user.Delete_NT_Account.value = 0;
  EXPECT_TRUE(world.delete_jo());
  EXPECT_TRUE(world.there("FS1/D/Profiles/jo/f"));
  EXPECT_THAT(world.log(), HasSubstr("Error Deleting: \n"));
}

}  // namespace
}  // namespace twk::lifecycle
