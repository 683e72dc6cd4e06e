#include "lifecycle/deletion/delete_user.hpp"

#include "lifecycle/delete_world.hpp"
#include "platform/acl.hpp"

namespace twk::lifecycle {
namespace {

using testing::HasSubstr;

class DeleteUser : public testing::TestWithParam<DomainKind>, public LifecycleWorld {
 protected:
  DeleteUser() : LifecycleWorld(GetParam()) {}
};
INSTANTIATE_TEST_SUITE_P(Kinds, DeleteUser, kKinds, test::kind_name);

const Names kWithoutJo = {"Users/", "Users/ann/", "Users/ann/c.txt", "Profiles/"};

TEST_P(DeleteUser, SharesAccountAndFoldersGoInThisOrder) {
  give_own_shares(*this);
  start_with("\\\\FS1\\jo$", "\\\\FS1\\jo.prf$");
  node();
  tick_all(*this);
  EXPECT_TRUE(delete_jo());
  EXPECT_FALSE(has_jo());
  EXPECT_EQ(shares("FS1"), Names());
  EXPECT_EQ(tree("FS1/D"), kWithoutJo);
  EXPECT_EQ(session.form1.TreeView1.find(key()), nullptr);
  const std::string name = is_nt() ? "jo" : "Jo Smith";
  EXPECT_THAT(log(), HasSubstr("User:admin\nDelete User: " + key() +
                               "\nFrom Server: FS1\nHome Share: jo$\n"
                               "Home Dir Path :\\\\FS1\\D$\\Users\\jo\n"
                               "Profile Server: FS1\nProfile ShareName: jo.prf$\n"
                               "Profile Dir Path :\\\\FS1\\D$\\Profiles\\jo\n"
                               "Deleted Share: jo$\nDeleted Share: jo.prf$\n"
                               "Deleted User Account: " +
                               name +
                               "\nDeleted Dir: \\\\FS1\\D$\\Users\\jo\n"
                               "Deleted Dir: \\\\FS1\\D$\\Profiles\\jo\nUser Deleted.\n"));
  EXPECT_THAT(log_tab(), testing::ElementsAre("GREEN  User " + name + " deleted."));
}

TEST_P(DeleteUser, WithoutAdministrativeSharesTheFolderIsReachedThroughAShareAbove) {
  give_own_shares(*this);
  share("FS1", "Users", "D:\\Users");
  set("Preferences", "AdminShares", "No");
  start_with("\\\\FS1\\jo$", "");
  tick_all(*this);
  EXPECT_TRUE(delete_jo());
  EXPECT_THAT(log(), HasSubstr("Home Dir Path :\\\\FS1\\"));
  EXPECT_FALSE(there("FS1/D/Users/jo"));
  EXPECT_TRUE(there("FS1/D/Users/ann/c.txt"));
  EXPECT_EQ(shares("FS1"), (Names{"Users", "jo.prf$"}));
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
  give_own_shares(*this);
  put("FS2/D/Users/outside.txt");
  std::filesystem::create_directory_symlink(server_folder("FS2/D/Users"),
                                            server_folder("FS1/D/Users/jo/Mail/out"));
  std::filesystem::create_symlink(server_folder("FS1/D/Users/ann/c.txt"),
                                  server_folder("FS1/D/Users/jo/file"));
  start_with("\\\\FS1\\jo$", "");
  tick_all(*this);
  delete_jo();
  EXPECT_FALSE(there("FS1/D/Users/jo"));
  EXPECT_TRUE(there("FS2/D/Users/outside.txt"));
  EXPECT_TRUE(there("FS1/D/Users/ann/c.txt"));
}

TEST_P(DeleteUser, EachShareIsDeletedOnItsOwnServer) {
  give_own_shares(*this);
  put("FS2/D/Profiles/jo/NTUser.dat");
  put("FS2/D/Dept/plan.txt");
  share("FS2", "jo.prf$", "D:\\Profiles\\jo");
  share("FS2", "jo$", "D:\\Dept");
  start_with("\\\\FS1\\jo$", "\\\\FS2\\jo.prf$");
  tick_all(*this);
  EXPECT_TRUE(delete_jo());
  EXPECT_EQ(shares("FS1"), Names{"jo.prf$"});
  EXPECT_EQ(shares("FS2"), Names{"jo$"});
  EXPECT_FALSE(there("FS1/D/Users/jo"));
  EXPECT_FALSE(there("FS2/D/Profiles/jo"));
  EXPECT_TRUE(there("FS2/D/Dept/plan.txt"));
  EXPECT_THAT(log_tab().back(), testing::StartsWith("GREEN"));
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
  give_own_shares(*this);
  start_with("\\\\FS1\\jo$", "");
  tick_all(*this);
  session.form1.Confirm_Deletes.value = 1;
  session.multi_user.No_Prompting.value = 0;
  dialogs.expect("Delete User " + key(), platform::Answer::kNo);
  EXPECT_FALSE(delete_jo());
  EXPECT_EQ(log(), "");
  EXPECT_EQ(tree("FS1/D"), kAll);
  EXPECT_TRUE(has_jo());
}

TEST_P(DeleteUser, QuestionsBeforeFoldersMayBeDeclined) {
  give_own_shares(*this);
  start_with("\\\\FS1\\jo$", "\\\\FS1\\jo.prf$");
  tick_all(*this);
  session.multi_user.Del_Permissions.value = 1;
  session.multi_user.No_Prompting.value = 0;
  dialogs.expect("Taking Ownership and changing permissions on: \r\n\\\\FS1\\D$\\Users\\jo",
                 platform::Answer::kNo);
  dialogs.expect("remove the folder 'jo' and all its contents?", platform::Answer::kNo);
  dialogs.expect("Taking Ownership and changing Permissions on: ", platform::Answer::kYes);
  dialogs.expect("\\\\FS1\\D$\\Profiles\\jo\r\n1 file, 4 bytes", platform::Answer::kYes);
  EXPECT_TRUE(delete_jo());
  Names left = kAll;
  left.erase("Profiles/jo/");
  left.erase("Profiles/jo/NTUser.dat");
  EXPECT_EQ(tree("FS1/D"), left);
  EXPECT_THAT(log(), HasSubstr("Error Deleting: \\\\FS1\\D$\\Users\\jo\n"));
}

TEST_P(DeleteUser, AccountMayBeKeptAndOnlyTheCommandRun) {
  give_own_shares(*this);
  set("Setup", "BatchFileDelete", "gone.cmd %Domain% %UserName%");
  start_with("\\\\FS1\\jo$", "");
  session.multi_user.Run_command.value = 1;
  process.result = {0, "nothing there"};
  EXPECT_TRUE(delete_jo());
  EXPECT_EQ(tree("FS1/D"), kAll);
  EXPECT_THAT(process.commands,
              testing::ElementsAre(testing::ElementsAre("gone.cmd", is_nt() ? "TWK" : "twk.test", "")));
  EXPECT_THAT(log(), HasSubstr("Not Deleting User NT account\nRunning Script: gone.cmd"));
  EXPECT_THAT(log(), HasSubstr("Error Running: gone.cmd"));
  EXPECT_THAT(log(), HasSubstr("Delete Function Completed.\n"));
  EXPECT_EQ(log_tab().back(), std::string(is_nt() ? "YELLOW  User jo deleted."
                                                  : "YELLOW  User Jo Smith delete function completed.") +
                                  ": Error Running: gone.cmd " + session.DomainName + " \"\": nothing there");
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
  start_with("", "");
  tick_all(*this);
  session.multi_user.Delete_Mail.value = 1;
  session.multi_user.EX_Server.text = std::string("exchange 2000");
  EXPECT_TRUE(delete_jo());
  EXPECT_THAT(log(), HasSubstr("Failed to delete mail account\n"));
  EXPECT_THAT(log_tab().at(0), testing::StartsWith("RED Failed to delete mail account for jo: No mailbox"));
  EXPECT_THAT(log_tab().at(1), testing::StartsWith("YELLOW"));
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
