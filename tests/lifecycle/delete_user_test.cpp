#include "lifecycle/deletion/delete_user.hpp"

#include "lifecycle/lifecycle_world.hpp"
#include "platform/acl.hpp"
#include "records/records.hpp"
#include "session/form1.hpp"
#include "session/multi_user.hpp"

namespace twk::lifecycle {
namespace {

using lab::DomainKind;
using test::LifecycleWorld;
using testing::HasSubstr;
using testing::Not;
using Names = std::set<std::string>;

/// Everything but mail and command is ticked.
void tick_all(LifecycleWorld& world) {
  session::MultiUser& window = world.session.multi_user;
  for (controls::CheckBox* const box : {&window.Del_Shares, &window.Delete_NT_Account, &window.Delete_Data})
    box->value = 1;
}

class DeleteUser : public testing::TestWithParam<DomainKind> {};
INSTANTIATE_TEST_SUITE_P(Kinds, DeleteUser,
                         testing::Values(DomainKind::kNative, DomainKind::kMixed, DomainKind::kNt),
                         test::kind_name);

/// jo with her own share for home and profile, and a neighbour.
void give_own_shares(LifecycleWorld& world) {
  world.put("FS1/D/Users/jo/a.txt");
  world.put("FS1/D/Users/jo/Mail/b.txt");
  world.put("FS1/D/Profiles/jo/NTUser.dat");
  world.put("FS1/D/Users/ann/c.txt");
  world.share("FS1", "jo$", "D:\\Users\\jo");
  world.share("FS1", "jo.prf$", "D:\\Profiles\\jo");
}

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

/// One user, what was chosen, and what is left of it.
struct Case {
  const char* name;
  const char* home;
  const char* profile;
  bool account_gone;
  Names tree;
  Names shares;
  const char* light;
  const char* log;
  std::function<void(LifecycleWorld&)> prepare;
};

const Names kAll = {
    "Users/",         "Users/ann/",          "Users/ann/c.txt", "Users/jo/",    "Users/jo/Mail/",
    "Users/jo/a.txt", "Users/jo/Mail/b.txt", "Profiles/",       "Profiles/jo/", "Profiles/jo/NTUser.dat"};

Names all_but(std::initializer_list<std::string> gone) {
  Names left = kAll;
  for (const std::string& name : gone)
    left.erase(name);
  return left;
}
const Names kWithoutHome = all_but({"Users/jo/", "Users/jo/Mail/", "Users/jo/a.txt", "Users/jo/Mail/b.txt"});
const Names kWithoutProfile = all_but({"Profiles/jo/", "Profiles/jo/NTUser.dat"});
const Names kBothShares = {"jo$", "jo.prf$"};

const Case kCases[] = {
    {"a mandatory profile stays",
     "\\\\FS1\\jo$",
     "\\\\FS1\\Profiles\\jo\\nt.MAN",
     true,
     kWithoutHome,
     {"jo.prf$"},
     "GREEN",
     "Unable to Delete Mandatory Profiles.\n",
     {}},
    {"a profile in NETLOGON stays",
     "\\\\FS1\\jo$",
     "\\\\FS1\\netlogon\\jo",
     true,
     kWithoutHome,
     {"jo.prf$"},
     "GREEN",
     "Cannot Delete Netlogon Directory.\n",
     {}},
    {"a profile on the logon server stays",
     "\\\\FS1\\jo$",
     "%LogonServer%\\x",
     true,
     kWithoutHome,
     {"jo.prf$"},
     "GREEN",
     "Cannot Delete From %Netlogon% Server.\n",
     {}},
    {"a local home is left alone",
     "D:\\Users\\jo",
     "",
     true,
     kAll,
     kBothShares,
     "GREEN",
     "Home Share and Profile Share are the Same...\n",
     {}},
    {"neither home nor profile",
     "",
     "",
     true,
     kAll,
     kBothShares,
     "GREEN",
     "Home Share and Profile Share are the Same...\nDeleted User Account",
     {}},
    {"a share that is not there",
     "\\\\FS1\\none$",
     "",
     true,
     kAll,
     kBothShares,
     "YELLOW",
     "Home Dir Path :\nDeleted Share: none$\n",
     {}},
    {"a server that is not there",
     "\\\\NOWHERE\\none$",
     "",
     false,
     kAll,
     kBothShares,
     "RED",
     "it cannot be found out who uses it",
     {}},
    {"a tail keeps the share",
     "\\\\FS1\\Users\\jo",
     "",
     true,
     kWithoutHome,
     {"jo.prf$", "Users"},
     "GREEN",
     "Deleted Dir: \\\\FS1\\D$\\Users\\jo\n",
     [](LifecycleWorld& world) {
       world.services.network.NetShareDel("FS1", "jo$");
       world.share("FS1", "Users", "D:\\Users");
     }},
    {"a common share stays",
     "\\\\FS1\\Common\\jo",
     "\\\\FS1\\COMMON\\jo\\prf",
     true,
     kWithoutHome,
     {"jo.prf$", "Common"},
     "GREEN",
     "Not deleting share Common on FS1: it leads to others as well: ann\n",
     [](LifecycleWorld& world) {
       world.services.network.NetShareDel("FS1", "jo$");
       world.share("FS1", "Common", "D:\\Users");
     }},
    {"a share above nothing but both goes with them",
     "\\\\FS1\\Common\\jo",
     "\\\\FS1\\COMMON\\jo\\prf",
     true,
     {"Users/", "Profiles/", "Profiles/jo/", "Profiles/jo/NTUser.dat"},
     {"jo.prf$"},
     "GREEN",
     "Deleted Common Share: Common\n",
     [](LifecycleWorld& world) {
       world.services.network.NetShareDel("FS1", "jo$");
       world.share("FS1", "Common", "D:\\Users");
       std::filesystem::remove_all(world.server_folder("FS1/D/Users/ann"));
     }},
    {"a home that its own share alone leads to is emptied before the share and the account go",
     "\\\\FS1\\jo$",
     "",
     true,
     all_but({"Users/jo/Mail/", "Users/jo/a.txt", "Users/jo/Mail/b.txt"}),
     {"jo.prf$"},
     "YELLOW",
     "The empty folder D:\\Users\\jo of FS1 stays: only its own share led to it\n",
     [](LifecycleWorld& world) {
       world.files.before = [](std::string_view path) {
         if (path.starts_with("\\\\FS1\\D$"))
           base::raise(base::error::kPathNotFound, "no such share");
       };
     }},
    {"a locked file stops the deletion and is named",
     "\\\\FS1\\jo$",
     "",
     true,
     all_but({"Users/jo/Mail/", "Users/jo/Mail/b.txt"}),
     {"jo.prf$"},
     "YELLOW",
     "a.txt on FS1 (access is denied or the file is in use; ",
     [](LifecycleWorld& world) {
       world.put("FS1/server.journal.ldif",
                 test::get_file(world.server_folder("FS1/server.journal.ldif").string()) +
                     "dn: CN=Folders\nchangetype: add\nobjectClass: fileObject\n# end\n\n"
                     "dn: CN=D,CN=Folders\nchangetype: add\nobjectClass: fileObject\n# end\n\n"
                     "dn: CN=Users,CN=D,CN=Folders\nchangetype: add\nobjectClass: fileObject\n# end\n\n"
                     "dn: CN=jo,CN=Users,CN=D,CN=Folders\nchangetype: add\nobjectClass: fileObject\n# end\n\n"
                     "dn: CN=a.txt,CN=jo,CN=Users,CN=D,CN=Folders\nchangetype: add\n"
                     "objectClass: fileObject\nlocked: TRUE\n# end\n\n");
     }},
    {"the directory refuses to delete the account",
     "\\\\FS1\\jo$",
     "",
     false,
     kAll,
     {"jo.prf$"},
     "RED",
     "Unable to Delete User",
     [](LifecycleWorld& world) {
       world.directory.before = [](std::string_view operation, std::string_view path) {
         if (operation == "Delete" && path.find("lanmanserver") == base::npos)
           base::raise(platform::ads_error::kAccessDenied, "no");
       };
     }},
    {"an account that cannot be read", "\\\\FS1\\jo$", "", false, kAll, kBothShares, "RED",
     "Unable to get user info from Domain, User:", [](LifecycleWorld& world) {
       world.directory.before = test::fail_at("GetObject", 1, platform::ads_error::kServerDown);
     }}};

TEST_P(DeleteUser, WhatFailsOrIsProtectedStaysAndIsReported) {
  for (const Case& one : kCases) {
    SCOPED_TRACE(one.name);
    LifecycleWorld world(GetParam());
    give_own_shares(world);
    world.start_with(one.home, one.profile);
    tick_all(world);
    if (one.prepare)
      one.prepare(world);
    EXPECT_EQ(world.delete_jo(), one.account_gone);
    world.directory.before = {};
    EXPECT_EQ(world.has_jo(), !one.account_gone);
    EXPECT_EQ(world.tree("FS1/D"), one.tree);
    EXPECT_EQ(world.shares("FS1"), one.shares);
    EXPECT_THAT(world.log(), HasSubstr(one.log));
    EXPECT_THAT(world.log_tab().back(), testing::StartsWith(one.light));
  }
}

/// Homes of jo that are not hers alone; ann has her own home and terminal-server home, and bob's home
/// is where `others` says.
TEST_P(DeleteUser, NothingIsDeletedWhenAnyOfItIsNotTheUsersAlone) {
  const struct {
    const char* home;
    const char* why;
    const char* others = "";
  } attacks[] = {
      {"\\\\FS1\\Users\\..\\ann", "leads elsewhere"},
      {"\\\\FS1\\Users\\jo\\..", "leads elsewhere"},
      {"\\\\FS1\\Users\\. .\\x", "leads elsewhere"},
      {"\\\\FS1\\\\jo", "names no share"},
      {"\\\\FS1\\", "names no share"},
      {"\\\\\\\\\\\\", "only of backslashes"},
      {"\\\\FS1\\D$", "one of the server's own"},
      {"\\\\FS1\\D$\\", "names no folder below its share"},
      {"\\\\FS1\\Users\\", "names no folder below its share"},
      {"\\\\FS1\\Users\\\\", "names no folder below its share"},
      {"\\\\FS1\\Data", "the whole drive"},
      {"\\\\FS1\\D$\\Users", "the share Users (D:\\Users)"},
      {"\\\\FS1\\Users\\a*", "holds a character"},
      {"\\\\FS1\\Users\\jo.", "end a server drops"},
      {"\\\\FS1\\Users\\out", "is a link"},
      {"\\\\FS1\\Users\\out\\jo", "is a link"},
      {"\\\\FS1\\Users", "the home of ann (\\\\fs1.twk.test\\users\\ANN)"},
      {"\\\\FS1\\D$\\Users\\ann", "the home of ann"},
      {"\\\\FS1\\Users\\ann\\sub", "the home of ann"},
      {"\\\\FS1\\Users\\ts", "the terminal-server home of ann (\\\\FS1\\D$\\Users\\ts\\ann)"},
      {"\\\\FS1\\Users\\jo", "the home of bob (\\\\FS1\\Users\\jo\\sub)", "\\\\FS1\\Users\\jo\\sub"},
      {"\\\\FS1\\jo$", "the home of bob (//10.0.0.1/jo$/sub)", "//10.0.0.1/jo$/sub"},
      {"\\\\FS1\\jo$", "the home of bob (\\\\FS1\\Users\\x\\..\\jo \\)", "\\\\FS1\\Users\\x\\..\\jo \\"}};
  LifecycleWorld world(GetParam());
  give_own_shares(world);
  world.share("FS1", "Users", "D:\\Users");
  world.share("FS1", "Data", "D:\\");
  world.put("FS1/D/Users/out/jo/outside.txt");
  std::filesystem::rename(world.server_folder("FS1/D/Users/out"), world.server_folder("FS2/D/Users/out"));
  std::filesystem::create_directory_symlink(world.server_folder("FS2/D/Users/out"),
                                            world.server_folder("FS1/D/Users/out"));
  world.add_user("ann", "\\\\fs1.twk.test\\users\\ANN");
  world.services.network.WTSSetUserConfig("DC1", "ann", platform::WtsConfigClass::kTerminalServerHomeDir,
                                          std::string("\\\\FS1\\D$\\Users\\ts\\ann"));
  world.add_user("bob", "");
  world.start_with("", "");
  tick_all(world);
  const Names before = world.tree("FS1/D");
  const Names shares = world.shares("FS1");
  for (const auto& attack : attacks) {
    SCOPED_TRACE(attack.home);
    world.set_home("jo", attack.home);
    world.set_home("bob", attack.others);
    EXPECT_FALSE(world.delete_jo());
    EXPECT_TRUE(world.has_jo());
    EXPECT_EQ(world.tree("FS1/D"), before);
    EXPECT_EQ(world.shares("FS1"), shares);
    EXPECT_TRUE(world.there("FS2/D/Users/out/jo/outside.txt"));
    EXPECT_THAT(world.log_tab().back(), testing::StartsWith("RED  Not deleting "));
    EXPECT_THAT(world.log_tab().back(), HasSubstr(attack.why));
  }
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
  EXPECT_EQ(world.tree("FS1/D"), kWithoutProfile);
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
