#include "batch/find_accounts.hpp"

#include "batch/account_functions.hpp"
#include "batch/multi_user_world.hpp"
#include "windows/multi_user/accounts_tab.hpp"

namespace twk::batch {
namespace {

namespace lock_acc = windows::lock_acc;
using test::InEveryKindOfDomain;
using test::MultiUserWorld;
using Names = std::set<std::string>;

class FindAccounts : public InEveryKindOfDomain, public MultiUserWorld {
 protected:
  FindAccounts() : MultiUserWorld(GetParam()) {}
};
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
  // The day begins eight hours after that of UTC.
  clock.seconds_ahead = -8 * 3600;
  expire(*this, "ann", 2026, 3, 1, 8);
  expire(*this, "ben", 2026, 3, 1, 7);
  expire(*this, "cas", 2025, 12, 31);
  open();
  select_users({"eve"});
  window.Expiredate.text = std::string("1/3/26");
  go(*this, lock_acc::kFindExpired);
  EXPECT_EQ(texts(window.ListView1), (Names{"eve", "ben", "cas"}));
  EXPECT_EQ(texts(window.ListView2), (Names{"ann", "dee"}));
  EXPECT_EQ(window.ListView1.find_key(key("ben"))->icon, "USER");
  EXPECT_EQ(window.Label3.caption.get(), "Total Expired Accounts: 2");
  EXPECT_EQ(window.btnGo.caption.get(), "&Go");
  EXPECT_FALSE(window.ProgressBar1_visible);
  EXPECT_FALSE(window.Unlock_Stage);
}

TEST_P(FindAccounts, WithoutADateNobodyIsFound) {
  expire(*this, "ann", 2020, 1, 1);
  open();
  for (const char* const text : {"", "soon", "31/31/26"}) {
    window.Expiredate.text = std::string(text);
    go(*this, lock_acc::kFindExpired);
    EXPECT_TRUE(window.ListView1.empty()) << text;
    EXPECT_EQ(window.Label3.caption.get(), "Total Expired Accounts: 0") << text;
  }
}

TEST_P(FindAccounts, ARowThatCannotBeReadIsNotAHit) {
  expire(*this, "ann", 2020, 1, 1);
  open();
  window.ListView2.add(key("nobody"), "nobody", "USER");
  window.Expiredate.text = std::string("1/1/2026");
  go(*this, lock_acc::kFindExpired);
  EXPECT_EQ(texts(window.ListView1), Names{"ann"});
  EXPECT_NE(window.ListView2.find_key(key("nobody")), nullptr);
}

TEST_P(FindAccounts, CancelEndsTheSearchAndKeepsWhatWasFound) {
  expire(*this, "dee", 2020, 1, 1);
  expire(*this, "ann", 2020, 1, 1);
  open();
  window.Expiredate.text = std::string("1/1/2026");
  int turns = 0;
  dialogs.on_events = [&] {
    EXPECT_TRUE(window.ProgressBar1_visible);
    EXPECT_FALSE(window.Command7.enabled);
    if (++turns == 2)
      windows::btnGo_Click(session);
  };
  go(*this, lock_acc::kFindExpired);
  EXPECT_EQ(turns, 2);
  EXPECT_EQ(texts(window.ListView1), Names{"dee"}) << "the list is read from its end";
  EXPECT_EQ(window.Label3.caption.get(), "Find canceled by user.");
  EXPECT_TRUE(window.Command7.enabled);
  EXPECT_FALSE(window.Unlock_Stage);
}

TEST_P(FindAccounts, ACancelledSearchForLockedAccountsLeavesThemToBeUnlocked) {
  lock({"ann", "dee"});
  open();
  int turns = 0;
  dialogs.on_events = [&] {
    if (++turns == 1)
      windows::btnGo_Click(session);
  };
  go(*this, lock_acc::kFindLocked);
  EXPECT_EQ(window.Label3.caption.get(),
            "Find canceled by user. Press 'G0' again to unlock selected accounts.");
  EXPECT_TRUE(window.Unlock_Stage);
  go(*this, lock_acc::kFindLocked);
  EXPECT_EQ(locked(), Names{"ann"});
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
