#include "groups/groups_world.hpp"
#include "windows/state/form1.hpp"

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

class GroupsWindow : public test::InBothDomains, public GroupsWorld {
 protected:
  GroupsWindow() : GroupsWorld(GetParam()) {}
};
INSTANTIATE_TEST_SUITE_P(Kinds, GroupsWindow, testing::Values(DomainKind::kNative, DomainKind::kNt),
                         test::kind_name);

TEST_P(GroupsWindow, LocksTheMainWindowWhileItIsOpen) {
  Groupsfrm_Show(session);
  EXPECT_TRUE(window.visible);
  EXPECT_FALSE(session.form1.enabled);
  EXPECT_FALSE(window.Group_Details.enabled || window.Delete_Group.enabled);
  EXPECT_EQ(window.btn_showGrpusers.visible.get(), !is_nt());
  show("Staff");
  const std::size_t users = window.NotMembers.size();
  Groupsfrm_ExitButton_Click(session);
  EXPECT_FALSE(window.visible);
  EXPECT_TRUE(session.form1.enabled);
  EXPECT_TRUE(window.Members.empty());
  EXPECT_EQ(window.NotMembers.size(), users + 1);
  EXPECT_FALSE(window.ListView1.empty()) << "it is hidden, not emptied";
}

TEST_P(GroupsWindow, ShowsTheUsersOfAGroupWithItsComment) {
  test::store(group("Staff"), {{"Description", "Everybody here"}});
  const std::size_t users = window.NotMembers.size();
  show("Staff");
  EXPECT_THAT(texts(window.Members), ElementsAre(jo()));
  EXPECT_EQ(window.NotMembers.size(), users - 1);
  EXPECT_EQ(window.Decsription_Text.text.get(), "Everybody here");
  EXPECT_EQ(panel(), "Number of Members = 1");
  EXPECT_EQ(session.form1.mouse_pointer, 0);
  const controls::ListRow& row = window.Members.at(0);
  EXPECT_EQ(row.icon, "USER");
  EXPECT_EQ(row.key, path_of("jo").substr(is_nt() ? 12 : 0));

  Groupsfrm_ListView1_DblClick(session);
  EXPECT_EQ(panel(), "Number of Members = 1") << "a second look counts nobody twice";
  show("Readers");
  EXPECT_THAT(texts(window.Members), IsEmpty());
  EXPECT_EQ(window.NotMembers.size(), users);
  EXPECT_EQ(window.Decsription_Text.text.get(), "");
}

TEST_P(GroupsWindow, ThoseByPrimaryGroupAreShownToo) {
  show("Domain Users");
  EXPECT_TRUE(window.NotMembers.empty()) << window.NotMembers.at(0).text;
  EXPECT_THAT(texts(window.Members), AllOf(Contains(jo()), Contains("ann"), Contains("bob")));
  EXPECT_EQ(panel(), "Number of Members = " + std::to_string(window.Members.size()));
  EXPECT_THAT(window.Members.at(0).sub_items,
              is_nt() ? testing::Matcher<std::vector<std::string>>(IsEmpty()) : ElementsAre("Primary"));
}

TEST_P(GroupsWindow, ChoosingAnotherGroupReturnsTheMembers) {
  show("Staff");
  Groupsfrm_ListView1_Click(session);
  EXPECT_FALSE(window.Members.empty()) << "the same group stays shown";
  choose("Readers");
  Groupsfrm_ListView1_Click(session);
  EXPECT_TRUE(window.Members.empty());
  EXPECT_THAT(texts(window.NotMembers), Contains(jo()));
  EXPECT_FALSE(window.Command1.enabled || window.Command2.enabled);
}

TEST_P(GroupsWindow, AGroupThatIsGoneIsReportedAndShowsNobody) {
  show("Staff");
  choose("Readers");
  services.directory.GetObject(is_nt() ? "WinNT://TWK" : "LDAP://twk.test")
      ->Delete("group", is_nt() ? "Readers" : "CN=Readers");
  Groupsfrm_Group_Details_Click(session);
  EXPECT_THAT(panel(), HasSubstr("Error reading group Readers: "));
  EXPECT_TRUE(window.Members.empty());
  EXPECT_EQ(session.form1.mouse_pointer, 0);
}

TEST_P(GroupsWindow, UsersAreAddedAndRemovedAtOnce) {
  show("Staff");
  select(window.NotMembers, "ann");
  select(window.NotMembers, "bob");
  Groupsfrm_NotMembers_Click(session);
  EXPECT_TRUE(window.Command2.enabled && !window.Command1.enabled);
  std::vector<std::string> paths;
  directory.before = [&](std::string_view operation, std::string_view path) {
    if (operation == "Add")
      paths.emplace_back(path);
  };
  Groupsfrm_Command2_Click(session);
  EXPECT_EQ(paths.size(), 2U);
  EXPECT_THAT(stored("Staff"), UnorderedElementsAre(jo(), "ann", "bob"));
  EXPECT_THAT(texts(window.Members), ElementsAre(jo(), "bob", "ann")) << "from the last row up";
  EXPECT_EQ(panel(), "Number of Members = 3");

  select(window.NotMembers, "Guest");
  select(window.Members, "ann");
  Groupsfrm_Members_Click(session);
  EXPECT_EQ(window.NotMembers.selected(), nullptr);
  EXPECT_TRUE(!window.Command2.enabled && window.Command1.enabled);
  Groupsfrm_Members_DblClick(session);
  EXPECT_THAT(stored("Staff"), UnorderedElementsAre(jo(), "bob"));
  EXPECT_THAT(texts(window.NotMembers), Contains("ann"));
}

TEST_P(GroupsWindow, AUserWhoIsRefusedStaysAndStopsNobodyElse) {
  show("Staff");
  for (const char* const name : {"ann", "bob", "Guest"})
    select(window.NotMembers, name);
  directory.before = test::fail_at("Add", 2, platform::ads_error::kAccessDenied);
  const auto refused = Groupsfrm_Command2_Click(session).refused;
  EXPECT_EQ(window.Members.size(), 3U);
  ASSERT_EQ(refused.size(), 1U);
  EXPECT_EQ(refused[0].number, platform::ads_error::kAccessDenied);
  const std::vector<const controls::ListRow*> left = window.NotMembers.selected_rows();
  ASSERT_EQ(left.size(), 1U);
  EXPECT_EQ(left[0]->key, refused[0].key);
  EXPECT_THAT(panel(), testing::StartsWith("Staff: " + left[0]->text + ": refused by the test"));

  window.NotMembers.select(nullptr);
  select(window.Members, jo());
  directory.before = test::fail_at("Remove", 1, platform::ads_error::kServerDown);
  Groupsfrm_Command1_Click(session);
  EXPECT_THAT(texts(window.Members), Contains(jo()));
  EXPECT_THAT(panel(), HasSubstr("refused by the test"));
}

TEST_P(GroupsWindow, AGroupThatCannotBeBoundIsReportedInABox) {
  show("Staff");
  select(window.NotMembers, "ann");
  dialogs.expect("Error Connecting to Group");
  directory.before = test::fail_at("GetObject", 1, platform::ads_error::kServerDown);
  Groupsfrm_Command2_Click(session);
  EXPECT_THAT(panel(), testing::StartsWith("Error Connecting to Group: refused by the test"));
  window.NotMembers.select(nullptr);
  select(window.Members, jo());
  dialogs.expect("Could not connect to Group");
  directory.before = test::fail_at("GetObject", 1, platform::ads_error::kServerDown);
  Groupsfrm_Command1_Click(session);
  EXPECT_THAT(stored("Staff"), ElementsAre(jo()));
  EXPECT_THAT(texts(window.Members), ElementsAre(jo()));
  EXPECT_EQ(session.form1.mouse_pointer, 0);
}

TEST_P(GroupsWindow, WithoutAChosenGroupNothingIsDone) {
  select(window.NotMembers, "ann");
  directory.before = [](std::string_view operation, std::string_view) { FAIL() << operation; };
  Groupsfrm_Group_Details_Click(session);
  Groupsfrm_Command1_Click(session);
  Groupsfrm_Command2_Click(session);
  EXPECT_FALSE(Groupsfrm_Delete_Group_Click(session));
  directory.before = {};
}

TEST_P(GroupsWindow, ADeletedGroupLeavesAllListsAndItsMembersStayUsers) {
  show("Staff");
  dialogs.expect("Sure to Delete Global Group Staff", platform::Answer::kCancel);
  EXPECT_FALSE(Groupsfrm_Delete_Group_Click(session));
  EXPECT_EQ(dialogs.last_title, "Delete Group");
  EXPECT_EQ(dialogs.last_icon, platform::Icon::kQuestion);
  EXPECT_THAT(stored("Staff"), ElementsAre(jo()));

  ASSERT_TRUE(windows::show_user_details(session, test::node_of_jo(*this)));
  dialogs.expect("Sure to Delete Global Group Staff");
  EXPECT_TRUE(Groupsfrm_Delete_Group_Click(session));
  EXPECT_THROW(group("Staff"), base::RuntimeError);
  for (const controls::ListView* const list :
       {&window.ListView1, &session.form1.ListView3, &session.form1.ListView4, &session.form1.ListView5})
    EXPECT_THAT(texts(*list), Not(Contains("Staff")));
  EXPECT_THAT(texts(window.NotMembers), Contains(jo()));
  EXPECT_TRUE(window.Members.empty());
  EXPECT_EQ(session.form1.USERID.text.get(), "") << "the details tab is emptied";
}

TEST_P(GroupsWindow, ARefusedDeletionIsReportedAndLeavesTheGroup) {
  show("Staff");
  dialogs.expect("Sure to Delete Global Group Staff");
  dialogs.expect("Error Deleting Group");
  directory.before = test::fail_at("Delete", 1, platform::ads_error::kAccessDenied);
  EXPECT_FALSE(Groupsfrm_Delete_Group_Click(session));
  EXPECT_THAT(texts(window.ListView1), Contains("Staff"));
  EXPECT_THAT(texts(window.Members), ElementsAre(jo()));
  EXPECT_THAT(panel(), testing::StartsWith("Error Deleting Group Staff: refused by the test"));
}

TEST(GroupsOfAPreparedDirectory, ContactsNestedGroupsAndUsersWithoutARowAreSkipped) {
  GroupsWorld world(DomainKind::kNative, [](LabSession& lab) {
    const platform::ObjectPtr contact = lab.place()->Create("contact", "CN=Pat");
    contact->SetInfo();
    const platform::ObjectPtr staff = lab.group("Staff");
    staff->Add(contact->ADsPath());
    staff->Add("LDAP://CN=Readers,DC=twk,DC=test");
  });
  world.make_user("late");
  world.group("Staff")->Add(world.path_of("late"));
  world.show("Staff");
  EXPECT_THAT(texts(world.window.Members), ElementsAre("Jo Smith"));
  EXPECT_EQ(world.panel(), "Number of Members = 1");
  EXPECT_EQ(world.window.StatusBar1.panel2.get(), "Not in the lists: 3");
}

TEST(GroupsOfAPreparedDirectory, AnUnloadedUserIsShownOnceAllUsersAreRead) {
  GroupsWorld world(DomainKind::kNative, [](LabSession& lab) { lab.set("ADO", "SkipUsers", "TRUE"); });
  world.show("Staff");
  EXPECT_EQ(world.panel(), "Number of Members = 0");
  world.dialogs.expect("000's of users", platform::Answer::kNo);
  Groupsfrm_btn_showGrpusers_Click(world.session);
  EXPECT_TRUE(world.window.NotMembers.empty());
  world.dialogs.expect("000's of users", platform::Answer::kYes);
  Groupsfrm_btn_showGrpusers_Click(world.session);
  EXPECT_THAT(texts(world.window.Members), ElementsAre("Jo Smith"));
  EXPECT_THAT(texts(world.window.NotMembers), Not(Contains("Jo Smith")));
}

TEST(GroupsOfAPreparedDirectory, MembersWithOtherNamesAreFound) {
  GroupsWorld world(DomainKind::kNative, [](LabSession& lab) {
    lab.group("Readers")->Add(lab.make_user("zoe", "Smith\\, Zoë \\#1 \\+ (x)*")->ADsPath());
  });
  world.show("Readers");
  EXPECT_THAT(texts(world.window.Members), ElementsAre("Smith, Zoë #1 + (x)*"));
  world.select(world.window.Members, "Smith, Zoë #1 + (x)*");
  Groupsfrm_Command1_Click(world.session);
  EXPECT_THAT(world.stored("Readers"), IsEmpty());
}

TEST(GroupsOfAPreparedDirectory, APrimaryGroupCannotBeLeft) {
  GroupsWorld world(DomainKind::kNative, [](LabSession& lab) {
    const platform::ObjectPtr jo = lab.account("jo");
    const platform::ObjectPtr staff = lab.group("Staff");
    test::store(jo, {{"primaryGroupID", staff->Get("primaryGroupToken")}});
    staff->Add(lab.path_of("ann"));
  });
  world.show("Staff");
  EXPECT_THAT(texts(world.window.Members), ElementsAre("ann", "Jo Smith"));
  world.select(world.window.Members, "Jo Smith");
  world.select(world.window.Members, "ann");
  world.dialogs.expect("Can't remove user 'Jo Smith' from 'Staff'\r\nas it is their primary Group.");
  Groupsfrm_Command1_Click(world.session);
  EXPECT_THAT(texts(world.window.Members), ElementsAre("Jo Smith"));
  EXPECT_THAT(world.stored("Staff"), IsEmpty());
  EXPECT_EQ(world.property("jo", "primaryGroupID"), world.group("Staff")->Get("primaryGroupToken").text());
}

class GroupsOfADirectory : public testing::Test, public GroupsWorld {};

TEST_F(GroupsOfADirectory, ManyPrimaryMembersAreReportedInAFewBoxes) {
  for (int i = 0; i < 12; ++i)
    make_user("more" + std::to_string(i));
  dialogs.expect("000's of users", platform::Answer::kYes);
  Groupsfrm_btn_showGrpusers_Click(session);
  show("Domain Users");
  const std::size_t members = window.Members.size();
  ASSERT_GT(members, 12U);
  for (std::size_t i = 0; i < members; ++i)
    window.Members.set_selected(window.Members.at(i), true);
  for (int i = 0; i < 10; ++i)
    dialogs.expect("as it is their primary Group.");
  EXPECT_EQ(Groupsfrm_Command1_Click(session).refused.size(), members);
  EXPECT_THAT(panel(), HasSubstr("(and " + std::to_string(members - 1) + " more)"));
}

TEST_F(GroupsOfADirectory, AHeadingSortsAndTheSameHeadingReversesTheOrder) {
  EXPECT_EQ(window.SortKey, 0);
  Groupsfrm_ListView1_ColumnClick(session, 1);
  EXPECT_EQ(window.SortKey, 1);
  EXPECT_FALSE(window.SortDescending);
  Groupsfrm_ListView1_ColumnClick(session, 1);
  EXPECT_TRUE(window.SortDescending);
  Groupsfrm_ListView1_ColumnClick(session, 1);
  EXPECT_FALSE(window.SortDescending);
  Groupsfrm_ListView1_ColumnClick(session, 1);
  Groupsfrm_ListView1_ColumnClick(session, 0);
  EXPECT_EQ(window.SortKey, 0);
  EXPECT_FALSE(window.SortDescending);
}

TEST_F(GroupsOfADirectory, AMemberThatCannotBeReadIsSkipped) {
  group("Staff")->Add(path_of("ann"));
  directory.before = test::fail_at("Members", 1, platform::ads_error::kServerDown);
  show("Staff");
  EXPECT_THAT(panel(), testing::StartsWith("Error reading group Staff: refused by the test"));
  EXPECT_TRUE(window.Members.empty());
  show("Staff");
  EXPECT_EQ(panel(), "Number of Members = 2");
}

TEST_F(GroupsOfADirectory, AFailureToMakeWritesDurableIsReported) {
  show("Staff");
  select(window.NotMembers, "ann");
  directory.before = test::fail_at("end_batch", 1, base::error::kDiskFull);
  Groupsfrm_Command2_Click(session);
  EXPECT_THAT(panel(), testing::StartsWith("Staff: refused by the test"));
}

}  // namespace
}  // namespace twk::windows
