#include "windows/tree/find_user.hpp"

#include "directory/tree/find_user.hpp"
#include "directory/tree/tree.hpp"
#include "platform/ldap_text.hpp"
#include "support/details_world.hpp"
#include "windows/start_up.hpp"
#include "windows/state/directory_windows.hpp"
#include "windows/state/form1.hpp"

namespace twk::windows {
namespace {

using test::LabSession;

class FindUser : public testing::Test {
 protected:
  void add_user(const std::string& name, std::string_view above = "CN=Users,DC=twk,DC=test") {
    test::add_user(lab, name, "acc" + std::to_string(++accounts), above);
  }
  std::vector<std::string> found(const std::string& text) {
    lab.session.find_user.txtFind.text = text;
    find_typed_user(lab.session);
    std::vector<std::string> names;
    for (std::size_t i = 0; i < lab.session.find_user.ListView1.size(); ++i)
      names.push_back(lab.session.find_user.ListView1.at(i).text);
    return names;
  }

  LabSession lab;
  int accounts = 0;
  controls::TreeView& tree = lab.session.form1.TreeView1;
  windows::frmFindW2KUser& window = lab.session.find_user;
};

TEST_F(FindUser, AnyPartOfTheNameFindsAndAStarMeansAnyText) {
  for (const char* const name : {"Zed Alpha", "Zed (Beta)", "Zed * Gamma", "Zed\\Delta"})
    add_user(name);
  lab.start();
  using testing::UnorderedElementsAre;
  EXPECT_THAT(found("ed al"), UnorderedElementsAre("Zed Alpha"));
  EXPECT_THAT(found("(Beta)"), UnorderedElementsAre("Zed (Beta)"));
  EXPECT_THAT(found("zed*a)"), UnorderedElementsAre("Zed (Beta)"));
  EXPECT_THAT(found("Zed\\"), UnorderedElementsAre("Zed\\Delta"));
  EXPECT_THAT(found("*)(cn="), testing::IsEmpty());
  const std::vector<std::string> all = found("");
  EXPECT_GE(all.size(), 8U);
  EXPECT_EQ(found("*"), all);
  EXPECT_EQ(found("**"), all);
}

TEST_F(FindUser, TheWindowShowsHowManyWereFoundAndWhere) {
  add_user("Zed Alpha");
  lab.start();
  found("zed");
  EXPECT_EQ(window.Label2.caption.get(), "1 user found");
  ASSERT_NE(window.ListView1.selected(), nullptr);
  EXPECT_EQ(window.ListView1.selected()->sub_items.at(0), "CN=Zed Alpha,CN=Users,DC=twk,DC=test");
  EXPECT_TRUE(window.btnSelectuser.enabled);
  found("nobody at all");
  EXPECT_EQ(window.Label2.caption.get(), "No user found");
  EXPECT_FALSE(window.btnSelectuser.enabled);
  EXPECT_FALSE(btnSelectuser_Click(lab.session));
}

TEST_F(FindUser, OpensTheTreeDownToTheUser) {
  test::add_unit(lab, "Sales, North");
  test::add_unit(lab, "Team", "OU=Sales\\, North,DC=twk,DC=test");
  add_user("Smith, John", "OU=Team,OU=Sales\\, North,DC=twk,DC=test");
  add_user("Jones, Jo\\");
  lab.start();
  for (const char* const name : {"Smith, John", "Jones, Jo\\"}) {
    ASSERT_EQ(found(name).size(), 1U);
    EXPECT_TRUE(btnSelectuser_Click(lab.session)) << name;
    ASSERT_NE(tree.selected(), nullptr);
    EXPECT_EQ(tree.selected()->text, name);
    EXPECT_TRUE(tree.selected()->parent->expanded);
  }
  EXPECT_EQ(lab.session.form1.StatusBar1.panel1.get(), "Ready.");
}

TEST_F(FindUser, AUserOutsideTheManagedOuIsNotFound) {
  test::add_unit(lab, "Sales");
  add_user("Zed Inside", "OU=Sales,DC=twk,DC=test");
  add_user("Zed Outside");
  lab.set("Setup", "OU", "OU=Sales,DC=twk,DC=test");
  ASSERT_EQ(windows::start_session(lab.session), windows::StartUp::kReady);
  EXPECT_THAT(found("zed"), testing::ElementsAre("Zed Inside"));
  window.ListView1.select(
      &window.ListView1.add("LDAP://twk.test/CN=Zed Outside,CN=Users,DC=twk,DC=test", "Zed Outside", "USER"));
  lab.dialogs.expect("User not found.");
  EXPECT_FALSE(btnSelectuser_Click(lab.session));
  EXPECT_EQ(lab.dialogs.last_title, "Search");
}

TEST_F(FindUser, AUserDeletedMeanwhileIsNotFound) {
  add_user("Zed");
  lab.start();
  ASSERT_EQ(found("zed").size(), 1U);
  lab.services.directory.GetObject("LDAP://CN=Users,DC=twk,DC=test")->Delete("user", "CN=Zed");
  lab.dialogs.expect("User not found.");
  EXPECT_FALSE(btnSelectuser_Click(lab.session));
}

TEST_F(FindUser, AnUnreachableDirectoryIsReported) {
  lab.start();
  tree.clear();
  tree.add(nullptr, "DC=gone,DC=test", "gone", "DOMAIN");
  lab.dialogs.expect("Error Searching AD for users.");
  EXPECT_TRUE(found("a").empty());
  EXPECT_EQ(lab.dialogs.last_title, "Search Error");
  tree.clear();
  lab.dialogs.expect("Error Searching AD for users.");
  EXPECT_TRUE(found("a").empty());
}

TEST(FindNtUser, WalksTheUsersAsLongAsThePersonWants) {
  LabSession lab(lab::DomainKind::kNt);
  for (const char* const name : {"zed1", "zed2", "zed3"})
    lab.services.directory.GetObject("WinNT://TWK")->Create("user", name)->SetInfo();
  lab.start();
  controls::TreeView& tree = lab.session.form1.TreeView1;
  lab.dialogs.expect_input("Enter Name to find", "ZeD");
  lab.dialogs.expect("Continue Search ?", platform::Answer::kYes);
  lab.dialogs.expect("Continue Search ?", platform::Answer::kNo);
  Find_User(lab.session);
  EXPECT_EQ(tree.selected()->text, "zed2");
  lab.dialogs.expect_input("Enter Name to find", "twk");
  lab.dialogs.expect("User not found.");
  Find_User(lab.session);
  EXPECT_EQ(tree.selected()->text, "zed2") << "the domain is no user";
  lab.dialogs.expect_input("Enter Name to find", "");
  Find_User(lab.session);
}

}  // namespace
}  // namespace twk::windows
