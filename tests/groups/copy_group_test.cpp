#include "windows/groups/copy_group.hpp"

#include "groups/groups_world.hpp"
#include "windows/state/group_windows.hpp"

namespace twk::windows {
namespace {

using lab::DomainKind;
using test::GroupsWorld;
using testing::Each;
using testing::ElementsAre;
using testing::HasSubstr;
using testing::IsEmpty;
using testing::UnorderedElementsAre;

/// "GREEN CN=ann Added user."
std::vector<std::string> results(const windows::frmCopy_Group& window) {
  std::vector<std::string> rows;
  for (std::size_t i = 0; i < window.ListView1.size(); ++i)
    rows.push_back(window.ListView1.at(i).icon + " " + window.ListView1.at(i).text);
  return rows;
}

class GroupCopy : public test::InBothDomains {
 protected:
  GroupCopy() {
    world.group("Staff")->Add(world.path_of("ann"));
    world.group("Staff")->Add(world.path_of("bob"));
    world.group("Readers")->Add(world.path_of("bob"));
    frmCopy_Group_Form_Load(world.session);
  }
  void choose(controls::ListView& combo, const std::string& name) {
    combo.select(&combo.at(combo.place_of(*combo.find_text(name).front())));
  }
  bool copy(const std::string& from, const std::string& to,
            platform::Answer answer = platform::Answer::kYes) {
    choose(window.ImageCombo1, from);
    choose(window.ImageCombo2, to);
    world.dialogs.expect("Are you sure you want to copy all users\r\nfrom: " + from + "\r\nto:     " + to,
                         answer);
    return frmCopy_Group_btnCopy_Group_Click(world.session);
  }
  /// A user's name in the results.
  [[nodiscard]] std::string name(const std::string& bare) const {
    return world.is_nt() ? bare : "CN=" + bare;
  }

  GroupsWorld world{GetParam()};
  windows::frmCopy_Group& window = world.session.copy_group;
};
INSTANTIATE_TEST_SUITE_P(Kinds, GroupCopy, testing::Values(DomainKind::kNative, DomainKind::kNt),
                         test::kind_name);

TEST_P(GroupCopy, OffersEveryGroupOfTheOneDomain) {
  EXPECT_EQ(window.Domain_Source.text.get(), world.session.DomainName);
  EXPECT_EQ(window.Domain_Destination.text.get(), world.session.DomainName);
  EXPECT_TRUE(window.Domain_Source.locked && window.Domain_Destination.locked);
  EXPECT_EQ(test::texts(window.ImageCombo1), test::texts(world.window.ListView1));
  EXPECT_EQ(test::texts(window.ImageCombo2), test::texts(world.window.ListView1));
  EXPECT_FALSE(window.btnCopy_Group.enabled);
  world.choose("Readers");
  frmCopy_Group_Form_Load(world.session);
  ASSERT_NE(window.ImageCombo1.selected(), nullptr);
  EXPECT_EQ(window.ImageCombo1.selected()->text, "Readers");
  choose(window.ImageCombo2, "Staff");
  frmCopy_Group_ImageCombo_Click(world.session);
  EXPECT_TRUE(window.btnCopy_Group.enabled);
}

TEST_P(GroupCopy, AddsEachUserAndShowsTheResult) {
  EXPECT_TRUE(copy("Staff", "Readers"));
  EXPECT_THAT(results(window), UnorderedElementsAre("GREEN " + name(world.jo()) + " Added user.",
                                                    "GREEN " + name("ann") + " Added user.",
                                                    "YELLOW " + name("bob") + " User already a member."));
  EXPECT_THAT(world.stored("Readers"), UnorderedElementsAre(world.jo(), "ann", "bob"));
  EXPECT_EQ(window.ProgressBar1.value, 100);
  EXPECT_EQ(window.Label1.caption.get(), "3 of 3 users: 2 added, 1 already members, 0 refused.");
  EXPECT_EQ(world.dialogs.last_title, "Copy Group ?");
  EXPECT_TRUE(window.btnCopy_Group.enabled);
}

TEST_P(GroupCopy, OntoItselfFindsEveryoneThere) {
  EXPECT_TRUE(copy("Staff", "Staff"));
  EXPECT_EQ(results(window).size(), 3U);
  EXPECT_THAT(results(window), Each(HasSubstr("YELLOW ")));
  EXPECT_EQ(world.stored("Staff").size(), 3U);
}

TEST_P(GroupCopy, ANoDoesNothing) {
  copy("Staff", "Readers");
  EXPECT_FALSE(copy("Staff", "Domain Guests", platform::Answer::kNo));
  EXPECT_EQ(results(window).size(), 3U) << "the results of the last copy stay";
}

TEST_P(GroupCopy, AUserWhoIsRefusedStopsNobodyElse) {
  world.directory.before = test::fail_at("Add", 1, platform::ads_error::kAccessDenied);
  EXPECT_TRUE(copy("Staff", "Readers"));
  const std::vector<std::string> rows = results(window);
  ASSERT_EQ(rows.size(), 3U);
  EXPECT_THAT(rows[0], testing::AllOf(HasSubstr("RED "), HasSubstr(" Error adding user.")));
}

TEST_P(GroupCopy, TheOtherProvidersNumberIsAnError) {
  const std::uint32_t other =
      world.is_nt() ? platform::ads_error::kObjectExists : platform::ads_error::kMemberInGroup;
  world.directory.before = test::fail_at("Add", 1, other);
  copy("Staff", "Readers");
  EXPECT_THAT(results(window).at(0), HasSubstr("RED "));
}

TEST_P(GroupCopy, AGroupThatCannotBeReadEndsItWithoutABox) {
  for (const char* const operation : {"GetObject", "Members"}) {
    world.directory.before = test::fail_at(operation, 1, platform::ads_error::kServerDown);
    EXPECT_FALSE(copy("Staff", "Readers"));
    EXPECT_THAT(results(window), IsEmpty());
    EXPECT_THAT(window.Label1.caption.get(), testing::StartsWith("The copy ended: refused by the test"));
    EXPECT_TRUE(window.btnCopy_Group.enabled && !window.Running);
  }
}

TEST_P(GroupCopy, IsStoppedAfterTheCurrentUser) {
  world.directory.before = [this](std::string_view operation, std::string_view) {
    if (operation != "Add")
      return;
    EXPECT_FALSE(window.btnCopy_Group.enabled);
    EXPECT_FALSE(frmCopy_Group_btnCancel_Click(world.session)) << "the window stays while it runs";
  };
  copy("Staff", "Readers");
  EXPECT_EQ(results(window).size(), 1U);
  EXPECT_THAT(window.Label1.caption.get(), HasSubstr("Stopped. 1 of 3 users"));
  EXPECT_TRUE(frmCopy_Group_btnCancel_Click(world.session));
}

TEST(GroupCopyInADirectory, LeavesOutNestedGroupsAndThoseByPrimaryGroup) {
  GroupsWorld world(DomainKind::kNative, [](test::LabSession& lab) {
    lab.services.directory.GetObject("LDAP://CN=Domain Users,CN=Users,DC=twk,DC=test")
        ->Add("LDAP://CN=Readers,DC=twk,DC=test");
  });
  frmCopy_Group_Form_Load(world.session);
  windows::frmCopy_Group& window = world.session.copy_group;
  for (const auto& [combo, name] :
       {std::pair{&window.ImageCombo1, "Domain Users"}, std::pair{&window.ImageCombo2, "Staff"}})
    combo->select(&combo->at(combo->place_of(*combo->find_text(name).front())));
  world.dialogs.expect("copy all users", platform::Answer::kYes);
  EXPECT_TRUE(frmCopy_Group_btnCopy_Group_Click(world.session));
  EXPECT_THAT(results(window), IsEmpty());
  EXPECT_EQ(window.Label1.caption.get(), "0 of 0 users: 0 added, 0 already members, 0 refused.");
}

TEST(GroupCopyInADirectory, ShowsTheMembersAgainWhenItsWindowCloses) {
  GroupsWorld world;
  world.show("Staff");
  world.dialogs.on_modal = [&](std::string_view shown) {
    EXPECT_EQ(shown, "frmCopy_Group");
    world.group("Staff")->Add(world.path_of("ann"));
  };
  Groupsfrm_COPY_GRP_Click(world.session);
  EXPECT_EQ(world.panel(), "Number of Members = 2");
}

}  // namespace
}  // namespace twk::windows
