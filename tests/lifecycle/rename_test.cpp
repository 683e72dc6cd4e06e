#include "lifecycle/lifecycle_world.hpp"
#include "lifecycle/rename_nt.hpp"
#include "lifecycle/rename_shr_dir.hpp"
#include "lifecycle/rename_user.hpp"

namespace twk::lifecycle {
namespace {

using lab::DomainKind;
using test::kNewStarters;
using test::LifecycleWorld;
using testing::HasSubstr;
using Names = std::set<std::string>;

/// One path of an account and what its renaming to "ann" comes to.
struct Case {
  const char* name;
  const char* path;
  bool home;
  bool renamed;
  const char* new_path;
  Names folders;  ///< below "Users"
  Names shares;
  const char* log;
  std::function<void(LifecycleWorld&)> prepare;
};

const Names kJo = {"Users/jo/", "Users/jo/a.txt", "Users/john/"};
const Names kAnn = {"Users/ann/", "Users/ann/a.txt", "Users/john/"};

const Case kCases[] = {
    {"a share of the user's own goes along",
     "\\\\FS1\\jo$",
     true,
     true,
     "\\\\FS1\\ann$",
     kAnn,
     {"ann$"},
     "Created new share: ann$\n",
     {}},
    {"a common share stays",
     "\\\\FS1\\Users\\jo",
     true,
     true,
     "\\\\FS1\\Users\\ann",
     kAnn,
     {"Users"},
     "",
     [](LifecycleWorld& world) {
       world.services.network.NetShareDel("FS1", "jo$");
       world.share("FS1", "Users", "D:\\Users");
     }},
    {"a folder below the user's stays where it is in it",
     "\\\\FS1\\jo$\\Mail",
     true,
     true,
     "\\\\FS1\\ann$\\Mail",
     {"Users/ann/", "Users/ann/a.txt", "Users/ann/Mail/", "Users/john/"},
     {"ann$"},
     "",
     [](LifecycleWorld& world) {
       std::filesystem::create_directories(world.server_folder("FS1/D/Users/jo/Mail"));
     }},
    {"a name that occurs twice is replaced twice",
     "\\\\FS1\\jo$\\jo",
     true,
     true,
     "\\\\FS1\\ann$\\ann",
     {"Users/ann/", "Users/ann/a.txt", "Users/ann/ann/", "Users/john/"},
     {"ann$"},
     "",
     [](LifecycleWorld& world) {
       std::filesystem::create_directories(world.server_folder("FS1/D/Users/jo/jo"));
     }},
    {"the new folder is there",
     "\\\\FS1\\jo$",
     true,
     false,
     "\\\\FS1\\jo$",
     {"Users/jo/", "Users/jo/a.txt", "Users/john/", "Users/ann/"},
     {"jo$"},
     "is there already\n",
     [](LifecycleWorld& world) {
       std::filesystem::create_directories(world.server_folder("FS1/D/Users/ann"));
     }},
    {"the new share cannot be made",
     "\\\\FS1\\jo$",
     true,
     false,
     "\\\\FS1\\jo$",
     kAnn,
     {"ann$"},
     "Failed to create New share: ann$  \\\\FS1\\jo$\nError Deleting/Creating Shares: jo$ / ann$\n",
     [](LifecycleWorld& world) { world.share("FS1", "ann$", "D:\\Profiles"); }},
    {"the share is not there",
     "\\\\FS1\\none$\\jo",
     true,
     false,
     "\\\\FS1\\none$\\jo",
     kJo,
     {"jo$"},
     "none$",
     {}},
    {"no share in the path",
     "\\\\FS1",
     true,
     false,
     "\\\\FS1",
     kJo,
     {"jo$"},
     "Could not get share for \\\\FS1\n",
     {}},
    {"a profile in NETLOGON",
     "\\\\FS1\\NetLogon\\jo",
     false,
     false,
     "\\\\FS1\\NetLogon\\jo",
     kJo,
     {"jo$"},
     "Unable Rename NETLOGON Share\n",
     {}},
    {"a profile on the logon server",
     "\\\\%LogonServer%\\x\\jo",
     false,
     false,
     "\\\\%LogonServer%\\x\\jo",
     kJo,
     {"jo$"},
     "Unable to Rename share from %LOGONSERVER%\n",
     {}},
    {"a home named NETLOGON is renamed",
     "\\\\FS1\\NETLOGON\\jo",
     true,
     true,
     "\\\\FS1\\NETLOGON\\ann",
     kAnn,
     {"NETLOGON"},
     "",
     [](LifecycleWorld& world) {
       world.services.network.NetShareDel("FS1", "jo$");
       world.share("FS1", "NETLOGON", "D:\\Users");
     }},
    {"a drive is no folder of a user",
     "\\\\FS1\\D$",
     true,
     false,
     "\\\\FS1\\D$",
     kJo,
     {"jo$"},
     "bears the name jo\n",
     {}},
    {"a path that leads elsewhere",
     "\\\\FS1\\jo$\\..\\john",
     true,
     false,
     "\\\\FS1\\jo$\\..\\john",
     kJo,
     {"jo$"},
     "leads elsewhere\n",
     {}}};

TEST(RenameShrDir, RenamesTheFolderAndTheUsersOwnShare) {
  for (const Case& one : kCases) {
    SCOPED_TRACE(one.name);
    LifecycleWorld world(DomainKind::kNt);
    world.put("FS1/D/Users/jo/a.txt");
    std::filesystem::create_directories(world.server_folder("FS1/D/Users/john"));
    world.share("FS1", "jo$", "D:\\Users\\jo");
    world.start_with(one.home ? one.path : "", one.home ? "" : one.path);
    if (one.prepare)
      one.prepare(world);
    world.session.log.open(world.session);
    EXPECT_EQ(Rename_ShrDir(world.session, world.account("jo"), one.path, "jo", "ann", one.home),
              one.renamed);
    world.session.log.close();
    EXPECT_EQ(world.property("jo", one.home ? "HomeDirectory" : "Profile"), one.new_path);
    Names folders = world.tree("FS1/D");
    for (const char* const other : {"Users/", "Profiles/"})
      folders.erase(other);
    EXPECT_EQ(folders, one.folders);
    EXPECT_EQ(world.shares("FS1"), one.shares);
    EXPECT_THAT(world.log(), HasSubstr(one.log));
  }
}

TEST(RenameShrDir, NobodyElsesFolderOrShareIsRenamedForAWordThatHoldsTheName) {
  LifecycleWorld world(DomainKind::kNt);
  std::filesystem::create_directories(world.server_folder("FS1/D/Users/user"));
  world.share("FS1", "Users", "D:\\Users");
  world.start_with("\\\\FS1\\Users\\user", "");
  EXPECT_TRUE(Rename_ShrDir(world.session, world.account("jo"), "\\\\FS1\\Users\\user", "user", "ann", true));
  EXPECT_TRUE(world.there("FS1/D/Users/ann"));
  EXPECT_EQ(world.shares("FS1"), Names{"Users"});
  EXPECT_EQ(world.property("jo", "HomeDirectory"), "\\\\FS1\\Users\\ann");
}

TEST(RenameShrDir, AccountThatCannotBeWrittenIsAFailure) {
  LifecycleWorld world(DomainKind::kNt);
  world.put("FS1/D/Users/jo/a.txt");
  world.share("FS1", "Users", "D:\\Users");
  world.start_with("\\\\FS1\\Users\\jo", "");
  const platform::ObjectPtr user = world.directory.GetObject(world.path_of("jo"));
  world.directory.before = test::fail_at("SetInfo", 1, platform::ads_error::kServerDown);
  EXPECT_FALSE(Rename_ShrDir(world.session, user, "\\\\FS1\\Users\\jo", "jo", "ann", true));
  EXPECT_TRUE(world.there("FS1/D/Users/ann/a.txt"));
  EXPECT_EQ(world.property("jo", "HomeDirectory"), "\\\\FS1\\Users\\jo");
}

class RenameInDirectory : public testing::Test {
 protected:
  void start(const std::string& home = "", const std::string& profile = "") {
    world.start_with(home, profile);
    world.session.form1.TreeView1.select(&world.node());
    RenameUser_Load(world.session);
  }
  void type_full_name(const std::string& name) {
    window.Full_Name.text = name;
    RenameUser_Full_Name_Change(world.session);
  }
  void type_logon_name(const std::string& name) {
    window.Logon_Name_pre2000.text = name;
    RenameUser_Logon_Name_pre2000_Change(world.session);
  }
  [[nodiscard]] std::string attribute(const std::string& cn, const char* name) {
    base::Trap trap;
    std::string text;
    trap([&] {
      text = world.services.directory.GetObject("LDAP://twk.test/CN=" + cn + "," + std::string(kNewStarters))
                 ->Get(name)
                 .text();
    });
    return text;
  }

  LifecycleWorld world;
  session::RenameUser& window = world.session.rename_user;
};

TEST_F(RenameInDirectory, WindowShowsTheNamesThatTheUserHas) {
  start();
  EXPECT_EQ(window.Full_Name.text.get(), "Jo Smith");
  EXPECT_EQ(window.Display_Name.text.get(), "Jo Smith");
  EXPECT_EQ(window.User_logon_name.text.get(), "jo");
  EXPECT_EQ(window.AD_Domain.caption.get(), "@twk.test");
  EXPECT_EQ(window.Logon_Name_pre2000.text.get(), "jo");
  EXPECT_EQ(window.WINNT_Domain.caption.get(), "TWK\\");
}

TEST_F(RenameInDirectory, AllNamesChangeAndTreeAndListsFollow) {
  start();
  world.session.multi_user.ListView2.add(world.key(), "Jo Smith", "USER");
  type_full_name("Marsh, Ann");
  type_logon_name("amarsh");
  window.User_logon_name.text = std::string();
  window.First_Name.text = std::string("Ann");
  window.Display_Name.text = std::string();
  EXPECT_TRUE(RenameUser_Command2_Click(world.session));
  const std::string key = "LDAP://twk.test/CN=Marsh\\, Ann," + std::string(kNewStarters);
  EXPECT_EQ(attribute("Marsh\\, Ann", "samAccountName"), "amarsh");
  EXPECT_EQ(attribute("Marsh\\, Ann", "userPrincipalName"), "");
  EXPECT_EQ(attribute("Marsh\\, Ann", "givenName"), "Ann");
  EXPECT_EQ(attribute("Marsh\\, Ann", "displayName"), "");
  ASSERT_NE(world.session.form1.TreeView1.find(key), nullptr);
  EXPECT_EQ(world.session.form1.TreeView1.find(key)->text, "Marsh, Ann");
  EXPECT_NE(world.session.multi_user.ListView2.find_key(key), nullptr);
  EXPECT_THAT(world.log(), HasSubstr("User:admin\nRenaming user:Jo Smith\nChanging Names for: amarsh\n"));
  RenameUser_Load(world.session);
  EXPECT_EQ(window.Full_Name.text.get(), "Marsh, Ann");
}

TEST_F(RenameInDirectory, ClashOfTheObjectsNameLeavesTheLogonNamesChanged) {
  start();
  world.services.directory.GetObject("LDAP://twk.test/" + std::string(kNewStarters))
      ->Create("organizationalUnit", "OU=x");
  const platform::ObjectPtr other =
      world.services.directory.GetObject("LDAP://twk.test/" + std::string(kNewStarters))
          ->Create("user", "CN=Ann Marsh");
  other->Put("samAccountName", "other");
  other->SetInfo();
  type_full_name("Ann Marsh");
  type_logon_name("amarsh");
  world.dialogs.expect("Error renaming user in AD\r\nCheck the names does not exist in the current OU");
  EXPECT_FALSE(RenameUser_Command2_Click(world.session));
  EXPECT_EQ(world.dialogs.last_title, "Error renaming user object in AD");
  EXPECT_EQ(attribute("Jo Smith", "samAccountName"), "amarsh");
  EXPECT_NE(world.session.form1.TreeView1.find(world.key()), nullptr);
  EXPECT_EQ(world.session.form1.mouse_pointer.get(), 0);
}

TEST_F(RenameInDirectory, LogonNameInUseChangesNothing) {
  start();
  type_logon_name("admin");
  type_full_name("Ann Marsh");
  world.dialogs.expect("Error renaming user account\r\n\r\nCheck user logon name");
  EXPECT_FALSE(RenameUser_Command2_Click(world.session));
  EXPECT_EQ(attribute("Jo Smith", "samAccountName"), "jo");
}

TEST_F(RenameInDirectory, OtherNamesThatAreRefusedBearTheirOwnTitle) {
  start();
  world.directory.before = test::fail_at("SetInfo", 2, platform::ads_error::kConstraint);
  world.dialogs.expect("Error renaming user account");
  EXPECT_FALSE(RenameUser_Command2_Click(world.session));
  EXPECT_EQ(world.dialogs.last_title, "Error renaming user names");
}

TEST_F(RenameInDirectory, DirectoriesFollowTheNameThatTheyAreMadeOf) {
  const struct {
    bool by_common_name;
    const char* folder;
    const char* share;
  } cases[] = {{true, "Ann Marsh", "Ann Marsh$"}, {false, "amarsh", "amarsh$"}};
  for (const auto& one : cases) {
    LifecycleWorld own;
    const std::string old = one.by_common_name ? "Jo Smith" : "jo";
    own.put("FS1/D/Users/" + old + "/a.txt");
    own.share("FS1", old + "$", "D:\\Users\\" + old);
    own.start_with("\\\\FS1\\" + old + "$", "\\\\FS1\\" + old + "$\\profile");
    controls::choose(own.session.form1.CNName, own.session.form1.SamAccountName, one.by_common_name);
    own.session.form1.TreeView1.select(&own.node());
    RenameUser_Load(own.session);
    session::RenameUser& names = own.session.rename_user;
    names.Full_Name.text = std::string("Ann Marsh");
    names.Logon_Name_pre2000.text = std::string("amarsh");
    names.Full_Name_Changed = names.Logon_Name_Changed = true;
    names.ReNameSD.value = 1;
    EXPECT_TRUE(RenameUser_Command2_Click(own.session));
    EXPECT_TRUE(own.there("FS1/D/Users/" + std::string(one.folder) + "/a.txt")) << own.log();
    EXPECT_EQ(own.shares("FS1"), Names{one.share});
    EXPECT_EQ(own.property("amarsh", "Profile"), "\\\\FS1\\" + std::string(one.share) + "\\profile");
    EXPECT_THAT(own.log_tab(),
                testing::ElementsAre("GREEN  Home Directory and Share renamed for " + std::string(one.folder),
                                     "GREEN " + old + " to " + one.folder + " has been renamed"));
  }
}

TEST_F(RenameInDirectory, FoldersThatAreNotThereAreToldInRed) {
  start("\\\\FS1\\Users\\jo", "\\\\FS1\\Profiles\\jo");
  controls::choose(world.session.form1.SamAccountName, world.session.form1.CNName, true);
  type_logon_name("amarsh");
  window.ReNameSD.value = 1;
  EXPECT_TRUE(RenameUser_Command2_Click(world.session));
  EXPECT_THAT(world.log(),
              HasSubstr("Failed to find Home direcotry: \nFailed to find Profile Directory: \n"));
  EXPECT_THAT(world.log_tab(),
              testing::ElementsAre("RED  Failed to find Home Dir", "RED  Failed to find profile Dir",
                                   "GREEN jo to amarsh has been renamed"));
  EXPECT_EQ(world.property("amarsh", "HomeDirectory"), "\\\\FS1\\Users\\jo");
}

class RenameInNt : public testing::Test {
 protected:
  void start(const std::string& home = "", const std::string& profile = "") {
    world.start_with(home, profile);
    world.session.form1.TreeView1.select(&world.node());
    Rename_NT_Load(world.session);
  }
  void type_logon(const std::string& name) {
    window.User_Logon.text = name;
    Rename_NT_User_Logon_Change(world.session);
  }

  LifecycleWorld world{DomainKind::kNt};
  session::Rename_NT& window = world.session.rename_nt;
};

TEST_F(RenameInNt, AccountFoldersAndFullNameGetTheNewName) {
  world.put("FS1/D/Users/jo/a.txt");
  world.put("FS1/D/Profiles/jo/b.txt");
  world.share("FS1", "jo$", "D:\\Users\\jo");
  world.share("FS1", "Profiles", "D:\\Profiles");
  start("\\\\FS1\\jo$", "\\\\FS1\\Profiles\\jo");
  type_logon("ann");
  window.Full_Name.text = std::string("Ann Marsh");
  Rename_NT_Full_Name_Change(world.session);
  window.RenameDir.value = 1;
  EXPECT_TRUE(Rename_NT_OKButton_Click(world.session));
  EXPECT_EQ(world.property("ann", "FullName"), "Ann Marsh");
  EXPECT_EQ(world.property("ann", "HomeDirectory"), "\\\\FS1\\ann$");
  EXPECT_EQ(world.property("ann", "Profile"), "\\\\FS1\\Profiles\\ann");
  EXPECT_TRUE(world.there("FS1/D/Users/ann/a.txt"));
  EXPECT_TRUE(world.there("FS1/D/Profiles/ann/b.txt"));
  EXPECT_EQ(world.session.form1.TreeView1.selected()->text, "ann");
  EXPECT_THAT(world.log_tab(), testing::ElementsAre("GREEN  jo renamed to ann",
                                                    "GREEN  Home Directory and Share renamed for ann",
                                                    "GREEN  Profile Directory and Share renamed for ann"));
  EXPECT_THAT(world.log(), HasSubstr("Rename User jo to ann\n"));
  EXPECT_THAT(world.log(), HasSubstr("Renamed Home Directory: jo to ann\n"));
}

TEST_F(RenameInNt, EachRefusedCharacterIsLoggedAndNothingIsRenamed) {
  start();
  type_logon("a*n/n");
  EXPECT_TRUE(Rename_NT_OKButton_Click(world.session));
  EXPECT_THAT(world.log(),
              HasSubstr("Invalid Character in User Name: *\nInvalid Character in User Name: /\n"));
  EXPECT_THAT(world.log_tab(), testing::ElementsAre("RED  Error Renaming jo"));
  EXPECT_EQ(world.session.form1.StatusBar1.panel1.get(), "Invalid Character in User Name: *");
  EXPECT_TRUE(world.has_jo());
}

TEST_F(RenameInNt, FullNameAloneRenamesNeitherAccountNorFolder) {
  world.put("FS1/D/Users/jo/a.txt");
  world.share("FS1", "jo$", "D:\\Users\\jo");
  start("\\\\FS1\\jo$");
  window.RenameDir.value = 1;
  EXPECT_TRUE(Rename_NT_OKButton_Click(world.session));
  window.Full_Name.text = std::string("Ann");
  Rename_NT_Full_Name_Change(world.session);
  EXPECT_TRUE(Rename_NT_OKButton_Click(world.session));
  EXPECT_EQ(world.property("jo", "FullName"), "Ann");
  EXPECT_TRUE(world.there("FS1/D/Users/jo/a.txt"));
  type_logon("");
  EXPECT_FALSE(Rename_NT_OKButton_Click(world.session));
}

TEST_F(RenameInNt, NameInUseIsToldAndNothingIsRenamed) {
  start();
  type_logon("admin");
  EXPECT_TRUE(Rename_NT_OKButton_Click(world.session));
  EXPECT_TRUE(world.has_jo());
  EXPECT_THAT(world.log_tab(), testing::ElementsAre("RED  Error Renaming jo"));
  EXPECT_THAT(world.log(), HasSubstr("Error Number: "));
}

}  // namespace
}  // namespace twk::lifecycle
