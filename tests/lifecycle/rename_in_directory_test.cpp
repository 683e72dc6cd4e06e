#include "lifecycle/lifecycle_world.hpp"
#include "windows/account/rename_user.hpp"
#include "windows/state/account_windows.hpp"
#include "windows/state/form1.hpp"
#include "windows/state/multi_user.hpp"

namespace twk::lifecycle {
namespace {

using test::kNewStarters;
using test::LifecycleWorld;
using testing::HasSubstr;
using Names = std::set<std::string>;

/// Opens the window on "jo", whose folders are named by the full or by the logon name.
windows::RenameUser& open_window(LifecycleWorld& world, bool by_full_name) {
  controls::choose(world.session.form1.CNName, world.session.form1.SamAccountName, by_full_name);
  world.session.form1.TreeView1.select(&world.node());
  windows::RenameUser_Load(world.session);
  return world.session.rename_user;
}

class RenameInDirectory : public testing::Test {
 protected:
  void start(const std::string& home = "", const std::string& profile = "", bool by_full_name = false) {
    world.start_with(home, profile);
    open_window(world, by_full_name);
  }
  void type_full_name(const std::string& name) {
    window.Full_Name.text = name;
    windows::RenameUser_Full_Name_Change(world.session);
  }
  void type_logon_name(const std::string& name) {
    window.Logon_Name_pre2000.text = name;
    windows::RenameUser_Logon_Name_pre2000_Change(world.session);
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
  windows::RenameUser& window = world.session.rename_user;
};

TEST_F(RenameInDirectory, WindowShowsTheNamesThatTheUserHas) {
  start();
  EXPECT_EQ(window.Full_Name.text.get(), "Jo Smith");
  EXPECT_EQ(window.Display_Name.text.get(), "Jo Smith");
  EXPECT_EQ(window.User_logon_name.text.get(), "jo");
  EXPECT_EQ(window.AD_Domain.text.get(), "@twk.test");
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
  world.directory.before = test::fail_at("SetInfo", 2, platform::ads_error::kConstraint);
  EXPECT_TRUE(windows::RenameUser_Command2_Click(world.session)) << "in more than one request";
  const std::string key = "LDAP://twk.test/CN=Marsh\\, Ann," + std::string(kNewStarters);
  EXPECT_EQ(attribute("Marsh\\, Ann", "samAccountName"), "amarsh");
  EXPECT_EQ(attribute("Marsh\\, Ann", "userPrincipalName"), "");
  EXPECT_EQ(attribute("Marsh\\, Ann", "givenName"), "Ann");
  EXPECT_EQ(attribute("Marsh\\, Ann", "displayName"), "");
  ASSERT_NE(world.session.form1.TreeView1.find(key), nullptr);
  EXPECT_EQ(world.session.form1.TreeView1.find(key)->text, "Marsh, Ann");
  EXPECT_NE(world.session.multi_user.ListView2.find_key(key), nullptr);
  EXPECT_THAT(world.log(), HasSubstr("User:admin\nRenaming user:Jo Smith\nChanging Names for: amarsh\n"));
  windows::RenameUser_Load(world.session);
  EXPECT_EQ(window.Full_Name.text.get(), "Marsh, Ann");
}

TEST_F(RenameInDirectory, ClashOfTheObjectsNameLeavesTheLogonNamesChanged) {
  start();
  world.make_user("other", "Ann Marsh");
  type_full_name("Ann Marsh");
  type_logon_name("amarsh");
  world.dialogs.expect("Error renaming user in AD\r\nCheck the names does not exist in the current OU");
  EXPECT_FALSE(windows::RenameUser_Command2_Click(world.session));
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
  EXPECT_FALSE(windows::RenameUser_Command2_Click(world.session));
  EXPECT_EQ(attribute("Jo Smith", "samAccountName"), "jo");
}

TEST_F(RenameInDirectory, OtherNamesThatAreRefusedBearTheirOwnTitle) {
  start();
  type_logon_name("amarsh");
  // All together, and then the second of two requests.
  int requests = 0;
  world.directory.before = [&](std::string_view operation, std::string_view) {
    if (operation == "SetInfo" && ++requests != 2)
      throw base::RuntimeError(platform::ads_error::kConstraint, "refused by the test");
  };
  world.dialogs.expect("Error renaming user account");
  EXPECT_FALSE(windows::RenameUser_Command2_Click(world.session));
  EXPECT_EQ(world.dialogs.last_title, "Error renaming user names");
  EXPECT_EQ(requests, 3);
  EXPECT_EQ(attribute("Jo Smith", "samAccountName"), "amarsh");
}

TEST_F(RenameInDirectory, DirectoriesFollowTheNameThatTheyAreMadeOf) {
  for (const bool by_full_name : {true, false}) {
    LifecycleWorld own;
    const std::string old = by_full_name ? "Jo Smith" : "jo";
    const std::string fresh = by_full_name ? "Ann Marsh" : "amarsh";
    own.put("FS1/D/Users/" + old + "/a.txt");
    own.share("FS1", old + "$", "D:\\Users\\" + old);
    own.start_with("\\\\FS1\\" + old + "$", "\\\\FS1\\" + old + "$\\profile");
    windows::RenameUser& names = open_window(own, by_full_name);
    names.Full_Name.text = std::string("Ann Marsh");
    names.Logon_Name_pre2000.text = std::string("amarsh");
    names.Full_Name_Changed = names.Logon_Name_Changed = true;
    names.ReNameSD.value = 1;
    EXPECT_TRUE(windows::RenameUser_Command2_Click(own.session));
    EXPECT_TRUE(own.there("FS1/D/Users/" + fresh + "/a.txt")) << own.log();
    EXPECT_EQ(own.shares("FS1"), Names{fresh + "$"});
    EXPECT_EQ(own.property("amarsh", "Profile"), "\\\\FS1\\" + fresh + "$\\profile");
    EXPECT_THAT(own.log_tab(), testing::ElementsAre("GREEN  Home Directory and Share renamed for " + fresh,
                                                    "GREEN " + old + " to " + fresh + " has been renamed"));
  }
}

TEST_F(RenameInDirectory, MissingFoldersAreReportedInRed) {
  start("\\\\FS1\\Users\\jo", "\\\\FS1\\Profiles\\jo");
  type_logon_name("amarsh");
  window.ReNameSD.value = 1;
  EXPECT_TRUE(windows::RenameUser_Command2_Click(world.session));
  EXPECT_THAT(world.log(), testing::AllOf(HasSubstr("Failed to find Home direcotry: \n"),
                                          HasSubstr("Failed to find Profile Directory: \n")));
  EXPECT_THAT(world.log_tab(),
              testing::ElementsAre("RED  Failed to find Home Dir: \\\\FS1\\Users\\jo is not there",
                                   "RED  Failed to find profile Dir: \\\\FS1\\Profiles\\jo is not there",
                                   "GREEN jo to amarsh has been renamed"));
  EXPECT_EQ(world.property("amarsh", "HomeDirectory"), "\\\\FS1\\Users\\jo");
}

TEST_F(RenameInDirectory, FoldersWithoutTheNameStayWhichIsReported) {
  for (const bool by_full_name : {true, false}) {
    LifecycleWorld own;
    own.put("FS1/D/Users/jo/a.txt");
    own.share("FS1", "Users", "D:\\Users");
    own.start_with("\\\\FS1\\Users\\jo", "");
    windows::RenameUser& names = open_window(own, by_full_name);
    (by_full_name ? names.Logon_Name_pre2000 : names.Full_Name).text = std::string("Ann");
    (by_full_name ? names.Logon_Name_Changed : names.Full_Name_Changed) = true;
    names.ReNameSD.value = 1;
    EXPECT_TRUE(windows::RenameUser_Command2_Click(own.session));
    EXPECT_TRUE(own.there("FS1/D/Users/jo/a.txt"));
    EXPECT_THAT(
        own.log_tab(),
        testing::ElementsAre(HasSubstr(by_full_name ? "named after the full name, which does not change"
                                                    : "named after the logon name, which does not change")));
  }
}

TEST_F(RenameInDirectory, NameThatNoFolderCanHaveRenamesNothing) {
  start("\\\\FS1\\Users\\jo", "", true);
  type_logon_name("amarsh");
  type_full_name("Ann.Lee\\Jo");
  window.ReNameSD.value = 1;
  world.dialogs.expect("Nothing was renamed.\r\n\r\nNo folder can be named \"Ann.Lee\\Jo\"");
  EXPECT_FALSE(windows::RenameUser_Command2_Click(world.session));
  EXPECT_EQ(attribute("Jo Smith", "samAccountName"), "jo");
  EXPECT_THAT(world.log_tab(), testing::ElementsAre(HasSubstr("it holds the character \\")));
}

TEST_F(RenameInDirectory, PrincipalNameKeepsItsSuffixAndTheForestOffersOthers) {
  const platform::ObjectPtr partitions =
      world.services.directory.GetObject("LDAP://twk.test/CN=Partitions,CN=Configuration,DC=twk,DC=test");
  partitions->PutEx(2, "uPNSuffixes", platform::ValueList{"north.example", "TWK.test"});
  partitions->SetInfo();
  start();
  EXPECT_EQ(window.AD_Domain.items(), (std::vector<std::string>{"@twk.test", "@north.example"}));
  window.AD_Domain.text = std::string("@north.example");
  EXPECT_TRUE(windows::RenameUser_Command2_Click(world.session));
  EXPECT_EQ(attribute("Jo Smith", "userPrincipalName"), "jo@north.example");
  windows::RenameUser_Load(world.session);
  EXPECT_EQ(window.AD_Domain.text.get(), "@north.example");
  type_logon_name("ann");
  EXPECT_TRUE(windows::RenameUser_Command2_Click(world.session));
  EXPECT_EQ(attribute("Jo Smith", "userPrincipalName"), "jo@north.example");
}

}  // namespace
}  // namespace twk::lifecycle
