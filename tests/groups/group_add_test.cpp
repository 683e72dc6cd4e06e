#include "windows/groups/group_add.hpp"

#include "groups/groups_world.hpp"
#include "windows/manage_ou.hpp"
#include "windows/state/form1.hpp"
#include "windows/state/group_windows.hpp"
#include "windows/state/multi_user.hpp"

namespace twk::windows {
namespace {

using lab::DomainKind;
using test::GroupsWorld;
using test::texts;
using testing::Contains;
using testing::ElementsAre;
using testing::HasSubstr;
using testing::Not;

/// Fills the dialog and presses OK.
bool make(GroupsWorld& world, const std::string& name, const std::string& description = {},
          std::size_t scope = 1, std::size_t kind = 0) {
  windows::GroupAdd& window = world.session.group_add;
  GroupAdd_Form_Load(world.session);
  window.GRP_Name.text = name;
  window.GRP_DESCRIPTION.text = description;
  for (std::size_t i = 0; i < window.Option1.size(); ++i)
    window.Option1.at(i).value = i == scope;
  for (std::size_t i = 0; i < window.Option2.size(); ++i)
    window.Option2.at(i).value = i == kind;
  return GroupAdd_OKButton_Click(world.session);
}

bool has(const controls::ListView& list, const std::string& name) {
  return !list.find_text(name).empty();
}

TEST(NewGroup, OffersWhatTheKindOfDomainHas) {
  const struct {
    DomainKind kind;
    std::array<bool, 3> scopes;
    bool kinds;
  } cases[] = {{DomainKind::kNative, {true, true, true}, true},
               {DomainKind::kMixed, {true, true, false}, true},
               {DomainKind::kNt, {false, true, false}, false}};
  for (const auto& one : cases) {
    GroupsWorld world(one.kind);
    GroupAdd_Form_Load(world.session);
    const windows::GroupAdd& window = world.session.group_add;
    for (std::size_t i = 0; i < 3; ++i) {
      EXPECT_EQ(window.Option1.at(i).enabled.get(), one.scopes.at(i)) << i;
      EXPECT_EQ(window.Option1.at(i).value.get(), i == 1);
    }
    EXPECT_EQ(window.Option2[0].enabled.get(), one.kinds);
    EXPECT_TRUE(window.Option2[0].value && !window.Option2[1].value);
  }
}

TEST(NewGroup, IsOfTheKindAndScopeThatWereChosen) {
  const struct {
    std::size_t kind;
    std::size_t scope;
    std::uint32_t type;
    const char* text;
  } cases[] = {
      {0, 0, 0x80000004, "Security Group - Domain Local"}, {0, 1, 0x80000002, "Security Group - Global"},
      {0, 2, 0x80000008, "Security Group - Universal"},    {1, 0, 4, "Distribution Group - Local Group"},
      {1, 1, 2, "Distribution Group - Global Group"},      {1, 2, 8, "Distribution Group - Universal Group"}};
  GroupsWorld world;
  for (const auto& one : cases) {
    const std::string name = one.text;
    ASSERT_TRUE(make(world, " " + name + " ", "why", one.scope, one.kind)) << world.panel();
    const std::string key = "LDAP://twk.test/cn=" + name + ",cn=users,DC=twk,DC=test";
    const auto rows = world.window.ListView1.find_text(name);
    ASSERT_EQ(rows.size(), 1U);
    EXPECT_EQ(rows[0]->key, key);
    EXPECT_EQ(rows[0]->icon, "W2KGRP");
    EXPECT_THAT(rows[0]->sub_items, ElementsAre(one.text));
    const platform::ObjectPtr group = world.services.directory.GetObject(key);
    EXPECT_EQ(static_cast<std::uint32_t>(group->Get("groupType").integer()), one.type);
    EXPECT_EQ(group->Get("samAccountName").text(), name);
    EXPECT_EQ(group->Get("Description").text(), "why");
    EXPECT_TRUE(has(world.session.form1.ListView3, name) && has(world.session.form1.ListView5, name));
    EXPECT_EQ(has(world.session.multi_user.ListView3, name), one.scope == 1);
  }
}

TEST(NewGroup, CanBeUsedAtOnce) {
  GroupsWorld world;
  ASSERT_TRUE(make(world, "Drivers"));
  world.show("Drivers");
  EXPECT_EQ(world.panel(), "Number of Members = 0");
  world.select(world.window.NotMembers, "ann");
  Groupsfrm_Command2_Click(world.session);
  EXPECT_EQ(world.panel(), "Number of Members = 1");
  world.dialogs.expect("Sure to Delete Global Group Drivers");
  EXPECT_TRUE(Groupsfrm_Delete_Group_Click(world.session));
}

TEST(NewGroup, IsMadeInTheManagedOu) {
  GroupsWorld world(DomainKind::kNative, [](test::LabSession& lab) {
    lab.set("Setup", "OU", test::kNewStarters);
    lab.set("Setup", "SubOU", "Yes");
  });
  ASSERT_EQ(world.session.ManagedOU, test::kNewStarters);
  ASSERT_TRUE(make(world, "Drivers")) << world.panel();
  EXPECT_EQ(world.window.ListView1.find_text("Drivers").front()->key,
            "LDAP://twk.test/cn=Drivers," + std::string(test::kNewStarters));
  EXPECT_EQ(world.place()->GetObject("group", "CN=Drivers")->Get("samAccountName").text(), "Drivers");
}

TEST(NewGroup, ALongOrOddNamePassesInADirectoryAsFarAsItIsAccepted) {
  GroupsWorld world;
  const std::string name = "R&D (x) #1 ünd more than 20 characters";
  ASSERT_TRUE(make(world, name)) << world.panel();
  world.show(name);
  EXPECT_EQ(world.panel(), "Number of Members = 0");
  for (const char* const wrong : {"a,b", "a=b", "a\"b", "a\\b", "a*b", "a/b"}) {
    world.dialogs.expect("Error Adding Group:");
    EXPECT_FALSE(make(world, wrong)) << wrong;
    EXPECT_FALSE(has(world.window.ListView1, wrong));
  }
  world.dialogs.expect("cannot hold the character U+0009");
  EXPECT_FALSE(make(world, "a\tb"));
  world.dialogs.expect("cannot hold the character U+000A");
  EXPECT_FALSE(make(world, "ab", "c\nd"));
}

TEST(NewGroup, ABlankNameDoesNothing) {
  for (const DomainKind kind : {DomainKind::kNative, DomainKind::kNt}) {
    GroupsWorld world(kind);
    world.directory.before = [](std::string_view operation, std::string_view) { FAIL() << operation; };
    EXPECT_FALSE(make(world, ""));
    EXPECT_FALSE(make(world, "   "));
    world.directory.before = {};
  }
}

TEST(NewGroup, RefusalsOfTheDirectoryAreReported) {
  for (const DomainKind kind : {DomainKind::kNative, DomainKind::kNt}) {
    GroupsWorld world(kind);
    const std::size_t groups = world.window.ListView1.size();
    world.dialogs.expect("Error Adding Group:");
    EXPECT_FALSE(make(world, "Staff"));
    world.dialogs.expect("Error Adding Group:refused by the test");
    world.directory.before = test::fail_at("SetInfo", 1, platform::ads_error::kAccessDenied);
    EXPECT_FALSE(make(world, "Drivers"));
    EXPECT_EQ(world.window.ListView1.size(), groups);
    EXPECT_EQ(world.session.form1.mouse_pointer, 0);
  }
}

TEST(NewGroupOfAnNtDomain, HasAtMostTwentyCharacters) {
  GroupsWorld world(DomainKind::kNt);
  const std::string twenty(20, 'a');
  ASSERT_TRUE(make(world, twenty, "who drives")) << world.panel();
  EXPECT_EQ(world.group(twenty)->Get("Description").text(), "who drives");
  EXPECT_THAT(world.window.ListView1.find_text(twenty).front()->sub_items, ElementsAre("Global"));
  for (const controls::ListView* const list :
       {&world.session.form1.ListView3, &world.session.form1.ListView5, &world.session.multi_user.ListView3})
    EXPECT_TRUE(has(*list, twenty));
  world.dialogs.expect("Name Length too long, max 20 Chrs");
  EXPECT_FALSE(make(world, twenty + "b"));
  EXPECT_EQ(world.dialogs.last_title, "Name Too Long");
}

TEST(NewGroupOfAnNtDomain, IsAskedForByItsName) {
  GroupsWorld world(DomainKind::kNt);
  world.dialogs.expect_input("Enter Name for New Global Group", "Drivers");
  Groupsfrm_Add_Group_Click(world.session);
  EXPECT_EQ(world.dialogs.last_title, "Add Group");
  EXPECT_EQ(world.group("Drivers")->Get("groupType").integer(), 2);
  EXPECT_TRUE(has(world.window.ListView1, "Drivers"));
  world.dialogs.expect_input("Enter Name for New Global Group", "");
  Groupsfrm_Add_Group_Click(world.session);
  world.dialogs.expect_input("Enter Name for New Global Group", std::string(21, 'a'));
  world.dialogs.expect("Name Length too long, max 20 Chrs");
  Groupsfrm_Add_Group_Click(world.session);
}

TEST(NewGroupOfADirectory, OpensTheDialog) {
  GroupsWorld world;
  std::vector<std::string> shown;
  world.dialogs.on_modal = [&](std::string_view window) { shown.emplace_back(window); };
  Groupsfrm_Add_Group_Click(world.session);
  EXPECT_THAT(shown, ElementsAre("GroupAdd"));
}

}  // namespace
}  // namespace twk::windows
