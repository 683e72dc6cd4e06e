#include "batch/move_users.hpp"

#include "batch/multi_user_world.hpp"
#include "windows/multi_user/move_tab.hpp"

namespace twk::batch {
namespace {

using test::InEveryKindOfDomain;
using test::MultiUserWorld;
using Names = std::set<std::string>;

class MoveUsers : public InEveryKindOfDomain {};
INSTANTIATE_TEST_SUITE_P(Kinds, MoveUsers, test::kKinds, test::kind_name);

/// Users get the home of "Staff" at "Head Office"; nothing is moved, for they have none.
void open_to_move(MultiUserWorld& world) {
  for (const char* const folder : {"Users", "Profiles"}) {
    std::filesystem::create_directories(world.folder.path() / "servers/FS1/D" / folder);
    platform::ShareInfo502 share;
    share.shi502_netname = folder;
    share.shi502_path = "D:\\" + share.shi502_netname;
    world.services.network.NetShareAdd("FS1", share);
  }
  world.open();
  world.window.Multi_Site.text = std::string("Head Office");
  world.window.Multi_Template.text = records::padded_template_name("Staff");
  world.window.UserData.index = 2;
  world.window.No_Prompt.value = 1;
}

Names moved(MultiUserWorld& world) {
  Names names;
  for (const std::string name : MultiUserWorld::kNames) {
    if (world.property(name, "HomeDirectory") == "\\\\FS1\\Users\\" + name)
      names.insert(name);
  }
  return names;
}

TEST_P(MoveUsers, UsersAndMembersGetTheNewPlaceAndAreNotMovedTwice) {
  MultiUserWorld world(GetParam());
  world.join_readers({"ann", "ben"});
  open_to_move(world);
  world.select_readers();
  world.select_users({"ben", "cas"});
  windows::btn_MoveUser_Click(world.session);
  EXPECT_EQ(moved(world), (Names{"ann", "ben", "cas"}));
  EXPECT_EQ(world.window.Label3.caption.get(), "Move Complete, Check Log for Errors");
  EXPECT_EQ(world.texts(world.window.ListView1), (Names{"Readers", "ben (gone)", "cas (gone)"}));
  EXPECT_TRUE(world.window.UserData.enabled);
  world.window.ListView1.remove(world.window.ListView1.at(0));
  const std::size_t told = world.log_tab().size();
  windows::btn_MoveUser_Click(world.session);
  EXPECT_EQ(world.log_tab().size(), told);
}

TEST_P(MoveUsers, CancelStopsAfterTheCurrentUser) {
  MultiUserWorld world(GetParam());
  open_to_move(world);
  world.select_users({"ann", "ben", "cas"});
  world.dialogs.on_events = [&] {
    EXPECT_EQ(world.window.btn_MoveUser.caption.get(), "&Cancel");
    EXPECT_FALSE(world.window.Multi_Site.enabled);
    if (moved(world).size() == 1)
      windows::btn_MoveUser_Click(world.session);
  };
  windows::btn_MoveUser_Click(world.session);
  EXPECT_EQ(moved(world), Names{"ann"});
  EXPECT_EQ(world.window.Label3.caption.get(), "Move Canceled");
  EXPECT_EQ(world.window.btn_MoveUser.caption.get(), "&Move Users");
  EXPECT_TRUE(world.window.Multi_Site.enabled);
}

TEST_P(MoveUsers, ARefusedUserIsReportedAndTheRestMoves) {
  MultiUserWorld world(GetParam());
  open_to_move(world);
  world.select_users({"ann", "ben"});
  world.directory.before = test::fail_at("SetInfo", 1, platform::ads_error::kAccessDenied);
  windows::btn_MoveUser_Click(world.session);
  EXPECT_EQ(moved(world), Names{"ben"});
  EXPECT_EQ(world.texts(world.window.ListView1), (Names{"ann", "ben (gone)"}));
  EXPECT_EQ(world.log_tab().size(), 2U);
  EXPECT_THAT(world.log_tab().front(), testing::StartsWith("RED "));
}

TEST(MoveUsersOfADirectory, AUnitMeansItsUsers) {
  MultiUserWorld world;
  open_to_move(world);
  world.select_unit();
  windows::btn_MoveUser_Click(world.session);
  EXPECT_EQ(moved(world), (Names{"ann", "ben", "cas", "dee"}));
}

TEST(MoveUsersOfADirectory, SiteAndTemplateMustBeChosen) {
  MultiUserWorld world;
  open_to_move(world);
  windows::btn_MoveUser_Click(world.session);
  world.select_users({"ann"});
  for (controls::ComboBox* const box : {&world.window.Multi_Site, &world.window.Multi_Template}) {
    const std::string chosen = box->text;
    box->text = std::string();
    world.dialogs.expect("A Site and Template must be selected before moving users");
    windows::btn_MoveUser_Click(world.session);
    EXPECT_EQ(world.dialogs.last_title, "Move users");
    box->text = chosen;
  }
  EXPECT_EQ(moved(world), Names());
}

}  // namespace
}  // namespace twk::batch
