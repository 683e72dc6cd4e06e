#include "groups/groups_world.hpp"
#include "session/form1.hpp"

namespace twk::windows {
namespace {

using lab::DomainKind;
using test::GroupsWorld;
using test::LabSession;
using test::texts;
using testing::AllOf;
using testing::Contains;
using testing::ElementsAre;
using testing::HasSubstr;
using testing::IsEmpty;
using testing::Not;
using testing::UnorderedElementsAre;

class GroupsWindow : public test::InBothDomains {};
INSTANTIATE_TEST_SUITE_P(Kinds, GroupsWindow, testing::Values(DomainKind::kNative, DomainKind::kNt),
                         test::kind_name);

TEST_P(GroupsWindow, LocksTheMainWindowWhileItIsOpen) {
  GroupsWorld world(GetParam());
  Groupsfrm_Show(world.session);
  EXPECT_TRUE(world.window.visible);
  EXPECT_FALSE(world.session.form1.enabled);
  EXPECT_FALSE(world.window.Group_Details.enabled || world.window.Delete_Group.enabled);
  EXPECT_EQ(world.window.btn_showGrpusers.visible.get(), !world.lab.is_nt());
  world.show("Staff");
  const std::size_t users = world.window.NotMembers.size();
  Groupsfrm_ExitButton_Click(world.session);
  EXPECT_FALSE(world.window.visible);
  EXPECT_TRUE(world.session.form1.enabled);
  EXPECT_TRUE(world.window.Members.empty());
  EXPECT_EQ(world.window.NotMembers.size(), users + 1);
  EXPECT_FALSE(world.window.ListView1.empty()) << "it is hidden, not emptied";
}

TEST_P(GroupsWindow, ShowsTheUsersOfAGroupWithItsComment) {
  GroupsWorld world(GetParam(), [](LabSession& lab) {
    const platform::ObjectPtr staff = lab.services.directory.GetObject(
        lab.is_nt() ? "WinNT://TWK/Staff" : "LDAP://CN=Staff,DC=twk,DC=test");
    staff->Put("Description", "Everybody here");
    staff->SetInfo();
  });
  const std::size_t users = world.window.NotMembers.size();
  world.show("Staff");
  EXPECT_THAT(texts(world.window.Members), ElementsAre(world.jo()));
  EXPECT_EQ(world.window.NotMembers.size(), users - 1);
  EXPECT_EQ(world.window.Decsription_Text.text.get(), "Everybody here");
  EXPECT_EQ(world.panel(), "Number of Members = 1");
  EXPECT_EQ(world.session.form1.mouse_pointer, 0);
  const controls::ListRow& row = world.window.Members.at(0);
  EXPECT_EQ(row.icon, "USER");
  EXPECT_EQ(row.key, world.lab.path_of("jo").substr(world.lab.is_nt() ? 12 : 0));

  Groupsfrm_ListView1_DblClick(world.session);
  EXPECT_EQ(world.panel(), "Number of Members = 1") << "a second look counts nobody twice";
  world.show("Readers");
  EXPECT_THAT(texts(world.window.Members), IsEmpty());
  EXPECT_EQ(world.window.NotMembers.size(), users);
  EXPECT_EQ(world.window.Decsription_Text.text.get(), "");
}

TEST_P(GroupsWindow, ThoseByPrimaryGroupAreShownToo) {
  GroupsWorld world(GetParam());
  world.show("Domain Users");
  EXPECT_TRUE(world.window.NotMembers.empty()) << world.window.NotMembers.at(0).text;
  EXPECT_THAT(texts(world.window.Members), AllOf(Contains(world.jo()), Contains("ann"), Contains("bob")));
  EXPECT_EQ(world.panel(), "Number of Members = " + std::to_string(world.window.Members.size()));
  EXPECT_THAT(
      world.window.Members.at(0).sub_items,
      world.lab.is_nt() ? testing::Matcher<std::vector<std::string>>(IsEmpty()) : ElementsAre("Primary"));
}

TEST_P(GroupsWindow, ChoosingAnotherGroupReturnsTheMembers) {
  GroupsWorld world(GetParam());
  world.show("Staff");
  Groupsfrm_ListView1_Click(world.session);
  EXPECT_FALSE(world.window.Members.empty()) << "the same group stays shown";
  world.choose("Readers");
  Groupsfrm_ListView1_Click(world.session);
  EXPECT_TRUE(world.window.Members.empty());
  EXPECT_THAT(texts(world.window.NotMembers), Contains(world.jo()));
  EXPECT_FALSE(world.window.Command1.enabled || world.window.Command2.enabled);
}

TEST_P(GroupsWindow, AGroupThatIsGoneIsReportedAndShowsNobody) {
  GroupsWorld world(GetParam());
  world.show("Staff");
  world.choose("Readers");
  world.lab.services.directory.GetObject(world.lab.is_nt() ? "WinNT://TWK" : "LDAP://twk.test")
      ->Delete("group", world.lab.is_nt() ? "Readers" : "CN=Readers");
  Groupsfrm_Group_Details_Click(world.session);
  EXPECT_THAT(world.panel(), HasSubstr("Error reading group Readers: "));
  EXPECT_TRUE(world.window.Members.empty());
  EXPECT_EQ(world.session.form1.mouse_pointer, 0);
}

TEST_P(GroupsWindow, UsersAreAddedAndRemovedAtOnce) {
  GroupsWorld world(GetParam());
  world.show("Staff");
  world.select(world.window.NotMembers, "ann");
  world.select(world.window.NotMembers, "bob");
  Groupsfrm_NotMembers_Click(world.session);
  EXPECT_TRUE(world.window.Command2.enabled && !world.window.Command1.enabled);
  std::vector<std::string> paths;
  world.lab.directory.before = [&](std::string_view operation, std::string_view path) {
    if (operation == "Add")
      paths.emplace_back(path);
  };
  Groupsfrm_Command2_Click(world.session);
  EXPECT_EQ(paths.size(), 2U);
  EXPECT_THAT(world.stored("Staff"), UnorderedElementsAre(world.jo(), "ann", "bob"));
  EXPECT_THAT(texts(world.window.Members), ElementsAre(world.jo(), "bob", "ann")) << "from the last row up";
  EXPECT_EQ(world.panel(), "Number of Members = 3");

  world.select(world.window.NotMembers, "Guest");
  world.select(world.window.Members, "ann");
  Groupsfrm_Members_Click(world.session);
  EXPECT_EQ(world.window.NotMembers.selected(), nullptr);
  EXPECT_TRUE(!world.window.Command2.enabled && world.window.Command1.enabled);
  Groupsfrm_Members_DblClick(world.session);
  EXPECT_THAT(world.stored("Staff"), UnorderedElementsAre(world.jo(), "bob"));
  EXPECT_THAT(texts(world.window.NotMembers), Contains("ann"));
}

TEST_P(GroupsWindow, AUserWhoIsRefusedStaysAndStopsNobodyElse) {
  GroupsWorld world(GetParam());
  world.show("Staff");
  for (const char* const name : {"ann", "bob", "Guest"})
    world.select(world.window.NotMembers, name);
  world.lab.directory.before = test::fail_at("Add", 2, platform::ads_error::kAccessDenied);
  const auto refused = Groupsfrm_Command2_Click(world.session).refused;
  EXPECT_EQ(world.window.Members.size(), 3U);
  ASSERT_EQ(refused.size(), 1U);
  EXPECT_EQ(refused[0].number, platform::ads_error::kAccessDenied);
  const std::vector<const controls::ListRow*> left = world.window.NotMembers.selected_rows();
  ASSERT_EQ(left.size(), 1U);
  EXPECT_EQ(left[0]->key, refused[0].key);
  EXPECT_THAT(world.panel(), testing::StartsWith("Staff: " + left[0]->text + ": refused by the test"));

  world.window.NotMembers.select(nullptr);
  world.select(world.window.Members, world.jo());
  world.lab.directory.before = test::fail_at("Remove", 1, platform::ads_error::kServerDown);
  Groupsfrm_Command1_Click(world.session);
  EXPECT_THAT(texts(world.window.Members), Contains(world.jo()));
  EXPECT_THAT(world.panel(), HasSubstr("refused by the test"));
}

TEST_P(GroupsWindow, AGroupThatCannotBeBoundIsReportedInABox) {
  GroupsWorld world(GetParam());
  world.show("Staff");
  world.select(world.window.NotMembers, "ann");
  world.lab.dialogs.expect("Error Connecting to Group");
  world.lab.directory.before = test::fail_at("GetObject", 1, platform::ads_error::kServerDown);
  Groupsfrm_Command2_Click(world.session);
  EXPECT_THAT(world.panel(), testing::StartsWith("Error Connecting to Group: refused by the test"));
  world.window.NotMembers.select(nullptr);
  world.select(world.window.Members, world.jo());
  world.lab.dialogs.expect("Could not connect to Group");
  world.lab.directory.before = test::fail_at("GetObject", 1, platform::ads_error::kServerDown);
  Groupsfrm_Command1_Click(world.session);
  EXPECT_THAT(world.stored("Staff"), ElementsAre(world.jo()));
  EXPECT_THAT(texts(world.window.Members), ElementsAre(world.jo()));
  EXPECT_EQ(world.session.form1.mouse_pointer, 0);
}

TEST_P(GroupsWindow, WithoutAChosenGroupNothingIsDone) {
  GroupsWorld world(GetParam());
  world.select(world.window.NotMembers, "ann");
  world.lab.directory.before = [](std::string_view operation, std::string_view) { FAIL() << operation; };
  Groupsfrm_Group_Details_Click(world.session);
  Groupsfrm_Command1_Click(world.session);
  Groupsfrm_Command2_Click(world.session);
  EXPECT_FALSE(Groupsfrm_Delete_Group_Click(world.session));
  world.lab.directory.before = {};
}

TEST_P(GroupsWindow, ADeletedGroupLeavesAllListsAndItsMembersStayUsers) {
  GroupsWorld world(GetParam());
  world.show("Staff");
  world.lab.dialogs.expect("Sure to Delete Global Group Staff", platform::Answer::kCancel);
  EXPECT_FALSE(Groupsfrm_Delete_Group_Click(world.session));
  EXPECT_EQ(world.lab.dialogs.last_title, "Delete Group");
  EXPECT_EQ(world.lab.dialogs.last_icon, platform::Icon::kQuestion);
  EXPECT_THAT(world.stored("Staff"), ElementsAre(world.jo()));

  ASSERT_TRUE(directory::show_user_details(world.session, test::node_of_jo(world.lab)));
  world.lab.dialogs.expect("Sure to Delete Global Group Staff");
  EXPECT_TRUE(Groupsfrm_Delete_Group_Click(world.session));
  EXPECT_THROW(world.group("Staff"), base::RuntimeError);
  for (const controls::ListView* const list :
       {&world.window.ListView1, &world.session.form1.ListView3, &world.session.form1.ListView4,
        &world.session.form1.ListView5})
    EXPECT_THAT(texts(*list), Not(Contains("Staff")));
  EXPECT_THAT(texts(world.window.NotMembers), Contains(world.jo()));
  EXPECT_TRUE(world.window.Members.empty());
  EXPECT_EQ(world.session.form1.USERID.text.get(), "") << "the details tab is emptied";
}

TEST_P(GroupsWindow, ARefusedDeletionIsReportedAndLeavesTheGroup) {
  GroupsWorld world(GetParam());
  world.show("Staff");
  world.lab.dialogs.expect("Sure to Delete Global Group Staff");
  world.lab.dialogs.expect("Error Deleting Group");
  world.lab.directory.before = test::fail_at("Delete", 1, platform::ads_error::kAccessDenied);
  EXPECT_FALSE(Groupsfrm_Delete_Group_Click(world.session));
  EXPECT_THAT(texts(world.window.ListView1), Contains("Staff"));
  EXPECT_THAT(texts(world.window.Members), ElementsAre(world.jo()));
  EXPECT_THAT(world.panel(), testing::StartsWith("Error Deleting Group Staff: refused by the test"));
}

TEST(GroupsOfADirectory, ContactsNestedGroupsAndUsersWithoutARowAreSkipped) {
  GroupsWorld world(DomainKind::kNative, [](LabSession& lab) {
    const std::string ou = "LDAP://" + std::string(test::kNewStarters);
    const platform::ObjectPtr contact = lab.services.directory.GetObject(ou)->Create("contact", "CN=Pat");
    contact->SetInfo();
    const platform::ObjectPtr staff = lab.services.directory.GetObject("LDAP://CN=Staff,DC=twk,DC=test");
    staff->Add(contact->ADsPath());
    staff->Add("LDAP://CN=Readers,DC=twk,DC=test");
  });
  world.make_user("late");
  world.group("Staff")->Add(world.lab.path_of("late"));
  world.show("Staff");
  EXPECT_THAT(texts(world.window.Members), ElementsAre("Jo Smith"));
  EXPECT_EQ(world.panel(), "Number of Members = 1");
  EXPECT_EQ(world.window.StatusBar1.panel2.get(), "Not in the lists: 3");
}

TEST(GroupsOfADirectory, AnUnloadedUserIsShownOnceAllUsersAreRead) {
  GroupsWorld world(DomainKind::kNative, [](LabSession& lab) { lab.set("ADO", "SkipUsers", "TRUE"); });
  world.show("Staff");
  EXPECT_EQ(world.panel(), "Number of Members = 0");
  world.lab.dialogs.expect("000's of users", platform::Answer::kNo);
  Groupsfrm_btn_showGrpusers_Click(world.session);
  EXPECT_TRUE(world.window.NotMembers.empty());
  world.lab.dialogs.expect("000's of users", platform::Answer::kYes);
  Groupsfrm_btn_showGrpusers_Click(world.session);
  EXPECT_THAT(texts(world.window.Members), ElementsAre("Jo Smith"));
  EXPECT_THAT(texts(world.window.NotMembers), Not(Contains("Jo Smith")));
}

TEST(GroupsOfADirectory, MembersWithOtherNamesAreFound) {
  GroupsWorld world(DomainKind::kNative, [](LabSession& lab) {
    const platform::ObjectPtr user =
        lab.services.directory.GetObject("LDAP://" + std::string(test::kNewStarters))
            ->Create("user", "CN=Smith\\, Zoë \\#1 \\+ (x)*");
    user->Put("samAccountName", "zoe");
    user->SetInfo();
    lab.services.directory.GetObject("LDAP://CN=Readers,DC=twk,DC=test")->Add(user->ADsPath());
  });
  world.show("Readers");
  EXPECT_THAT(texts(world.window.Members), ElementsAre("Smith, Zoë #1 + (x)*"));
  world.select(world.window.Members, "Smith, Zoë #1 + (x)*");
  Groupsfrm_Command1_Click(world.session);
  EXPECT_THAT(world.stored("Readers"), IsEmpty());
}

TEST(GroupsOfADirectory, APrimaryGroupCannotBeLeft) {
  GroupsWorld world(DomainKind::kNative, [](LabSession& lab) {
    const platform::ObjectPtr jo = lab.account("jo");
    const platform::ObjectPtr staff = lab.services.directory.GetObject("LDAP://CN=Staff,DC=twk,DC=test");
    jo->Put("primaryGroupID", staff->Get("primaryGroupToken"));
    jo->SetInfo();
    staff->Add(lab.path_of("ann"));
  });
  world.show("Staff");
  EXPECT_THAT(texts(world.window.Members), ElementsAre("ann", "Jo Smith"));
  world.select(world.window.Members, "Jo Smith");
  world.select(world.window.Members, "ann");
  world.lab.dialogs.expect("Can't remove user 'Jo Smith' from 'Staff'\r\nas it is their primary Group.");
  Groupsfrm_Command1_Click(world.session);
  EXPECT_THAT(texts(world.window.Members), ElementsAre("Jo Smith"));
  EXPECT_THAT(world.stored("Staff"), IsEmpty());
  EXPECT_EQ(world.lab.property("jo", "primaryGroupID"),
            world.group("Staff")->Get("primaryGroupToken").text());
}

TEST(GroupsOfADirectory, ManyPrimaryMembersAreReportedInAFewBoxes) {
  GroupsWorld world;
  for (int i = 0; i < 12; ++i)
    world.make_user("more" + std::to_string(i));
  world.lab.dialogs.expect("000's of users", platform::Answer::kYes);
  Groupsfrm_btn_showGrpusers_Click(world.session);
  world.show("Domain Users");
  const std::size_t members = world.window.Members.size();
  ASSERT_GT(members, 12U);
  for (std::size_t i = 0; i < members; ++i)
    world.window.Members.set_selected(world.window.Members.at(i), true);
  for (int i = 0; i < 10; ++i)
    world.lab.dialogs.expect("as it is their primary Group.");
  EXPECT_EQ(Groupsfrm_Command1_Click(world.session).refused.size(), members);
  EXPECT_THAT(world.panel(), HasSubstr("(and " + std::to_string(members - 1) + " more)"));
}

TEST(GroupsOfADirectory, AHeadingSortsAndTheSameHeadingReversesTheOrder) {
  GroupsWorld world;
  EXPECT_EQ(world.window.SortKey, 0);
  Groupsfrm_ListView1_ColumnClick(world.session, 1);
  EXPECT_EQ(world.window.SortKey, 1);
  EXPECT_FALSE(world.window.SortDescending);
  Groupsfrm_ListView1_ColumnClick(world.session, 1);
  EXPECT_TRUE(world.window.SortDescending);
  Groupsfrm_ListView1_ColumnClick(world.session, 1);
  EXPECT_FALSE(world.window.SortDescending);
  Groupsfrm_ListView1_ColumnClick(world.session, 1);
  Groupsfrm_ListView1_ColumnClick(world.session, 0);
  EXPECT_EQ(world.window.SortKey, 0);
  EXPECT_FALSE(world.window.SortDescending);
}

TEST(GroupsOfADirectory, AMemberThatCannotBeReadIsSkipped) {
  GroupsWorld world;
  world.group("Staff")->Add(world.lab.path_of("ann"));
  world.lab.directory.before = test::fail_at("Members", 1, platform::ads_error::kServerDown);
  world.show("Staff");
  EXPECT_THAT(world.panel(), testing::StartsWith("Error reading group Staff: refused by the test"));
  EXPECT_TRUE(world.window.Members.empty());
  world.show("Staff");
  EXPECT_EQ(world.panel(), "Number of Members = 2");
}

TEST(GroupsOfADirectory, AFailureToMakeWritesDurableIsReported) {
  GroupsWorld world;
  world.show("Staff");
  world.select(world.window.NotMembers, "ann");
  world.lab.directory.before = test::fail_at("end_batch", 1, base::error::kDiskFull);
  Groupsfrm_Command2_Click(world.session);
  EXPECT_THAT(world.panel(), testing::StartsWith("Staff: refused by the test"));
}

}  // namespace
}  // namespace twk::windows
