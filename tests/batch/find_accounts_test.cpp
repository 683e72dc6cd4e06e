#include "batch/find_accounts.hpp"

#include "batch/account_functions.hpp"
#include "batch/multi_user_world.hpp"
#include "windows/multi_user/accounts_tab.hpp"

namespace twk::batch {
namespace {

namespace lock_acc = session::lock_acc;
using test::InEveryKindOfDomain;
using test::MultiUserWorld;
using Names = std::set<std::string>;

class FindAccounts : public InEveryKindOfDomain {};
INSTANTIATE_TEST_SUITE_P(Kinds, FindAccounts, test::kKinds, test::kind_name);

void expire(MultiUserWorld& world, const char* name, int year, int month, int day, int hour = 0) {
  platform::User user = world.winnt(name);
  user.put_AccountExpirationDate(
      base::make_date({.year = year, .month = month, .day = day, .hour = hour, .minute = 0, .second = 0}));
  user.SetInfo();
}

void go(MultiUserWorld& world, int function) {
  world.window.LockAcc.index = function;
  windows::btnGo_Click(world.session);
}

TEST_P(FindAccounts, ExpiredBeforeTheDayComeToTheSelectionWithWhatIsThere) {
  MultiUserWorld world(GetParam());
  expire(world, "ann", 2026, 3, 1);
  expire(world, "ben", 2026, 2, 28, 12);
  expire(world, "cas", 2025, 12, 31);
  world.open();
  world.select_users({"eve"});
  world.window.Expiredate.text = std::string("1/3/26");
  go(world, lock_acc::kFindExpired);
  EXPECT_EQ(world.texts(world.window.ListView1), (Names{"eve", "ben", "cas"}));
  EXPECT_EQ(world.texts(world.window.ListView2), (Names{"ann", "dee"}));
  EXPECT_EQ(world.window.ListView1.find_key(world.key("ben"))->icon, "USER");
  EXPECT_EQ(world.window.Label3.caption.get(), "Total Expired Accounts: 2");
  EXPECT_EQ(world.window.btnGo.caption.get(), "&Go");
  EXPECT_FALSE(world.window.ProgressBar1_visible);
  EXPECT_FALSE(world.window.Unlock_Stage);
}

TEST_P(FindAccounts, WithoutADateNobodyIsFound) {
  for (const char* const text : {"", "soon", "31/31/26"}) {
    MultiUserWorld world(GetParam());
    expire(world, "ann", 2020, 1, 1);
    world.open();
    world.window.Expiredate.text = std::string(text);
    go(world, lock_acc::kFindExpired);
    EXPECT_TRUE(world.window.ListView1.empty()) << text;
    EXPECT_EQ(world.window.Label3.caption.get(), "Total Expired Accounts: 0") << text;
  }
}

TEST_P(FindAccounts, ARowThatCannotBeReadIsNotAHit) {
  MultiUserWorld world(GetParam());
  expire(world, "ann", 2020, 1, 1);
  world.open();
  world.window.ListView2.add(world.key("nobody"), "nobody", "USER");
  world.window.Expiredate.text = std::string("1/1/2026");
  go(world, lock_acc::kFindExpired);
  EXPECT_EQ(world.texts(world.window.ListView1), Names{"ann"});
  EXPECT_NE(world.window.ListView2.find_key(world.key("nobody")), nullptr);
}

TEST_P(FindAccounts, CancelEndsTheSearchAndKeepsWhatWasFound) {
  MultiUserWorld world(GetParam());
  expire(world, "dee", 2020, 1, 1);
  expire(world, "ann", 2020, 1, 1);
  world.open();
  world.window.Expiredate.text = std::string("1/1/2026");
  int turns = 0;
  world.dialogs.on_events = [&] {
    EXPECT_TRUE(world.window.ProgressBar1_visible);
    EXPECT_FALSE(world.window.Command7.enabled);
    if (++turns == 2)
      windows::btnGo_Click(world.session);
  };
  go(world, lock_acc::kFindExpired);
  EXPECT_EQ(turns, 2);
  EXPECT_EQ(world.texts(world.window.ListView1), Names{"dee"}) << "the list is read from its end";
  EXPECT_EQ(world.window.Label3.caption.get(), "Find canceled by user.");
  EXPECT_TRUE(world.window.Command7.enabled);
  EXPECT_FALSE(world.window.Unlock_Stage);
}

TEST_P(FindAccounts, ACancelledSearchForLockedAccountsLeavesThemToBeUnlocked) {
  MultiUserWorld world(GetParam());
  world.lock({"ann", "dee"});
  world.open();
  int turns = 0;
  world.dialogs.on_events = [&] {
    if (++turns == 1)
      windows::btnGo_Click(world.session);
  };
  go(world, lock_acc::kFindLocked);
  EXPECT_EQ(world.window.Label3.caption.get(),
            "Find canceled by user. Press 'G0' again to unlock selected accounts.");
  EXPECT_TRUE(world.window.Unlock_Stage);
  go(world, lock_acc::kFindLocked);
  EXPECT_EQ(world.locked(), Names{"ann"});
}

TEST(FindAccountsInALongList, TheBarMovesInFiftieths) {
  MultiUserWorld world;
  world.open();
  world.window.ListView2.clear();
  for (int i = 0; i < 500; ++i)
    world.window.ListView2.add("LDAP://twk.test/CN=" + std::to_string(i) + ",DC=twk,DC=test", "x", "USER");
  std::vector<int> values;
  const auto watch =
      world.window.ProgressBar1.value.watch([&] { values.push_back(world.window.ProgressBar1.value); });
  go(world, lock_acc::kFindLocked);
  ASSERT_EQ(values.size(), 50U);
  EXPECT_EQ(values.front(), 2);
  EXPECT_EQ(values.back(), 100);
}

}  // namespace
}  // namespace twk::batch
