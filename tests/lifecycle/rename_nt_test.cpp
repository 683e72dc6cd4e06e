#include "windows/account/rename_nt.hpp"
#include "lifecycle/lifecycle_world.hpp"
#include "windows/state/account_windows.hpp"
#include "windows/state/form1.hpp"

namespace twk::lifecycle {
namespace {

using test::LifecycleWorld;
using testing::HasSubstr;

class RenameInNt : public testing::Test {
 protected:
  void start(const std::string& home = "", const std::string& profile = "") {
    world.start_with(home, profile);
    world.session.form1.TreeView1.select(&world.node());
    windows::Rename_NT_Load(world.session);
  }
  void type_logon(const std::string& name) {
    window.User_Logon.text = name;
    windows::Rename_NT_User_Logon_Change(world.session);
  }

  LifecycleWorld world{lab::DomainKind::kNt};
  windows::Rename_NT& window = world.session.rename_nt;
};

TEST_F(RenameInNt, AccountFoldersAndFullNameGetTheNewName) {
  world.put("FS1/D/Users/jo/a.txt");
  world.put("FS1/D/Profiles/jo/b.txt");
  world.share("FS1", "jo$", "D:\\Users\\jo");
  world.share("FS1", "Profiles", "D:\\Profiles");
  start("\\\\FS1\\jo$", "\\\\FS1\\Profiles\\jo");
  type_logon("ann");
  window.Full_Name.text = std::string("Ann Marsh");
  windows::Rename_NT_Full_Name_Change(world.session);
  window.RenameDir.value = 1;
  EXPECT_TRUE(windows::Rename_NT_OKButton_Click(world.session));
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
  EXPECT_TRUE(windows::Rename_NT_OKButton_Click(world.session));
  EXPECT_THAT(world.log(),
              HasSubstr("Invalid Character in User Name: *\nInvalid Character in User Name: /\n"));
  EXPECT_THAT(world.log_tab(),
              testing::ElementsAre("RED  Error Renaming jo: no account name has the character *"));
  EXPECT_EQ(world.session.form1.StatusBar1.panel1.get(), "Invalid Character in User Name: *");
  EXPECT_TRUE(world.has_jo());
}

TEST_F(RenameInNt, OnlyTheFullNameRenamesNeitherAccountNorFolder) {
  world.put("FS1/D/Users/jo/a.txt");
  world.share("FS1", "jo$", "D:\\Users\\jo");
  start("\\\\FS1\\jo$");
  window.RenameDir.value = 1;
  EXPECT_TRUE(windows::Rename_NT_OKButton_Click(world.session));
  window.Full_Name.text = std::string("Ann");
  windows::Rename_NT_Full_Name_Change(world.session);
  EXPECT_TRUE(windows::Rename_NT_OKButton_Click(world.session));
  EXPECT_EQ(world.property("jo", "FullName"), "Ann");
  EXPECT_TRUE(world.there("FS1/D/Users/jo/a.txt"));
  type_logon("");
  EXPECT_FALSE(windows::Rename_NT_OKButton_Click(world.session));
}

TEST_F(RenameInNt, NameInUseIsReportedAndNothingIsRenamed) {
  start();
  type_logon("admin");
  EXPECT_TRUE(windows::Rename_NT_OKButton_Click(world.session));
  EXPECT_TRUE(world.has_jo());
  EXPECT_THAT(
      world.log_tab(),
      testing::ElementsAre(HasSubstr("RED  Error Renaming jo: The domain has an account admin already")));
  EXPECT_THAT(world.log(), HasSubstr("Error Number: "));
}

}  // namespace
}  // namespace twk::lifecycle
