#include "base/errors.hpp"
#include "batch/multi_user_world.hpp"
#include "windows/multi_user/accounts_tab.hpp"
#include "windows/multi_user/delete_tab.hpp"
#include "windows/multi_user/move_tab.hpp"

namespace twk::batch {
namespace {

using lab::DomainKind;
using test::MultiUserWorld;
using Names = std::set<std::string>;

/// A function of the window over the users of its selection.
struct Function {
  const char* name;
  void (*choose)(MultiUserWorld& world);
  void (*press)(windows::Desktop& session);
  bool (*is_done)(MultiUserWorld& world, const std::string& user);
  controls::Button windows::MultiUser::*button;
  const char* caption;
  const char* completed;
  const char* canceled;
};

void choose_disable(MultiUserWorld& world) {
  world.window.LockAcc.index = windows::lock_acc::kDisable;
  world.dialogs.expect("This will disable all selected accounts\r\nPress 'OK' to continue");
}

bool is_disabled(MultiUserWorld& world, const std::string& user) {
  return world.disabled().contains(user);
}

/// Only accounts go, and nobody asks.
void choose_delete(MultiUserWorld& world) {
  world.window.Delete_NT_Account.value = 1;
  world.window.No_Prompting.value = 1;
}

bool is_deleted(MultiUserWorld& world, const std::string& user) {
  return !world.has(user);
}

/// Users get the home of "Staff" at "Head Office"; nothing is moved, for they have none.
void choose_move(MultiUserWorld& world) {
  for (const std::string folder : {"Users", "Profiles"}) {
    std::filesystem::create_directories(world.folder.path() / "servers/FS1/D" / folder);
    platform::ShareInfo502 share;
    share.shi502_netname = folder;
    share.shi502_path = "D:\\" + folder;
    world.services.network.NetShareAdd("FS1", share);
  }
  world.window.Multi_Site.text = std::string("Head Office");
  world.window.Multi_Template.text = records::padded_template_name("Staff");
  world.window.UserData.index = 2;
  world.window.No_Prompt.value = 1;
}

bool is_moved(MultiUserWorld& world, const std::string& user) {
  return world.property(user, "HomeDirectory") == "\\\\FS1\\Users\\" + user;
}

const Function kDisable = {
    "Disable", choose_disable, windows::btnGo_Click, is_disabled, &windows::MultiUser::btnGo,
    "&Go",     " Completed",   "Canceled by user."};
const Function kDelete = {"Delete",
                          choose_delete,
                          windows::Del_User_Click,
                          is_deleted,
                          &windows::MultiUser::Del_User,
                          "&Delete Users",
                          "Delete Completed, Check log for errors",
                          "Delete Canceled"};
const Function kMove = {"Move",
                        choose_move,
                        windows::btn_MoveUser_Click,
                        is_moved,
                        &windows::MultiUser::btn_MoveUser,
                        "&Move Users",
                        "Move Complete, Check Log for Errors",
                        "Move Canceled"};

class Functions : public testing::TestWithParam<std::tuple<Function, DomainKind>> {
 protected:
  void open() {
    world_.open();
    function_.choose(world_);
  }
  void press() { function_.press(world_.session); }
  [[nodiscard]] Names done() {
    Names names;
    for (const char* const name : MultiUserWorld::kNames) {
      if (function_.is_done(world_, name))
        names.insert(name);
    }
    return names;
  }
  void expect_idle(const std::string& told) {
    EXPECT_EQ(world_.window.Label3.caption.get(), told);
    EXPECT_EQ((world_.window.*function_.button).caption.get(), function_.caption);
    EXPECT_TRUE(world_.window.Command1.enabled && world_.window.Command7.enabled);
    EXPECT_FALSE(windows::is_running(world_.window));
  }

  const Function function_ = std::get<Function>(GetParam());
  MultiUserWorld world_ = MultiUserWorld(std::get<DomainKind>(GetParam()));
};

std::string name_of_case(const testing::TestParamInfo<std::tuple<Function, DomainKind>>& info) {
  return std::get<Function>(info.param).name +
         test::kind_name({std::get<DomainKind>(info.param), info.index});
}

INSTANTIATE_TEST_SUITE_P(Functions, Functions,
                         testing::Combine(testing::Values(kDisable, kDelete, kMove), test::kKinds),
                         name_of_case);

/// Those after which the row of a user is a ghost.
class TakingFunctions : public Functions {};
INSTANTIATE_TEST_SUITE_P(Functions, TakingFunctions,
                         testing::Combine(testing::Values(kDelete, kMove), test::kKinds), name_of_case);

TEST_P(Functions, UsersAndMembersAreDone) {
  world_.join_readers({"ann", "ben"});
  open();
  world_.select_readers();
  world_.select_users({"ben", "cas"});
  press();
  EXPECT_EQ(done(), (Names{"ann", "ben", "cas"}));
  expect_idle(function_.completed);
}

TEST_P(TakingFunctions, ASecondRunSkipsGhostsAndReadsTheGroupAgain) {
  world_.join_readers({"ann"});
  open();
  world_.select_readers();
  world_.select_users({"cas"});
  press();
  EXPECT_EQ(world_.texts(world_.window.ListView1), (Names{"Readers", "cas (gone)"}));
  world_.join_readers({"dee"});
  press();
  EXPECT_TRUE(done().contains("dee"));
  EXPECT_FALSE(done().contains("ben"));
}

TEST_P(TakingFunctions, ARefusedUserStaysAndTheRestContinues) {
  open();
  world_.select_users({"ben", "ann", "cas"});
  world_.directory.before = [refused = false](std::string_view operation, std::string_view) mutable {
    if ((operation == "Delete" || operation == "SetInfo") && !std::exchange(refused, true))
      base::raise(platform::ads_error::kAccessDenied, "refused by the test");
  };
  press();
  EXPECT_EQ(done(), (Names{"ann", "cas"}));
  EXPECT_EQ(world_.texts(world_.window.ListView1), (Names{"ann (gone)", "ben", "cas (gone)"}));
  EXPECT_THAT(world_.log_tab(), testing::Contains(testing::StartsWith("RED ")));
}

TEST_P(Functions, AUnitMeansItsUsers) {
  if (world_.is_nt())
    return;
  open();
  world_.select_unit();
  press();
  EXPECT_EQ(done().size(), 4U);
}

TEST_P(Functions, CancelStopsAfterTheCurrentUserEvenWithinAGroup) {
  world_.join_readers({"ann", "ben", "cas", "dee"});
  open();
  world_.select_readers();
  world_.dialogs.on_events = [&] {
    EXPECT_EQ((world_.window.*function_.button).caption.get(), "&Cancel");
    for (const controls::Button* const button :
         {&world_.window.Command1, &world_.window.Command7, &world_.window.btnGo, &world_.window.Del_User,
          &world_.window.btn_MoveUser})
      EXPECT_EQ(button->enabled, button == &(world_.window.*function_.button));
    if (done().size() == 2)
      press();
  };
  press();
  EXPECT_EQ(done().size(), 2U);
  expect_idle(function_.canceled);
  EXPECT_FALSE(world_.session.import.ImportStopped) << "what works on files next must not stop";
}

TEST_P(Functions, AGroupThatCannotBeReadEndsTheRunAndIsReported) {
  open();
  world_.window.ListView1.add("LDAP://twk.test/CN=No,DC=twk,DC=test", "No",
                              world_.is_nt() ? "Local" : "W2KGRP");
  world_.select_users({"ann"});
  press();
  EXPECT_EQ(done(), Names());
  expect_idle("Error Retrieving Domain Info.");
  EXPECT_THAT(world_.log(), testing::HasSubstr("Error Retrieving Domain Info.\nError Number: "));
}

TEST(MoveFunction, NeedsASiteAndATemplate) {
  MultiUserWorld world;
  world.open();
  choose_move(world);
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
  EXPECT_FALSE(is_moved(world, "ann"));
}

}  // namespace
}  // namespace twk::batch
