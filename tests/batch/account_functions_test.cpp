#include "batch/account_functions.hpp"
#include "windows/state/multi_user.hpp"

#include "base/errors.hpp"
#include "batch/multi_user_world.hpp"
#include "batch/unlock_accounts.hpp"
#include "support/kept_view.hpp"
#include "windows/multi_user/accounts_tab.hpp"

namespace twk::batch {
namespace {

namespace lock_acc = windows::lock_acc;
using lab::DomainKind;
using test::InEveryKindOfDomain;
using test::MultiUserWorld;
using testing::HasSubstr;
using Names = std::set<std::string>;

class AccountFunctions : public InEveryKindOfDomain, public MultiUserWorld {
 protected:
  AccountFunctions() : MultiUserWorld(GetParam()) {}
  /// Presses Go for a function and answers its question.
  void go(int function, const std::string& confirmation = "selected accounts",
          platform::Answer answer = platform::Answer::kOk) {
    window.LockAcc.index = function;
    if (!confirmation.empty())
      dialogs.expect(confirmation, answer);
    windows::btnGo_Click(session);
  }
};
INSTANTIATE_TEST_SUITE_P(Kinds, AccountFunctions, test::kKinds, test::kind_name);

const std::string kHeading = "*****************************************\n31/12/2026 09:05:00\nUser:admin\n";

TEST_P(AccountFunctions, AccountsAreDisabledAndEnabled) {
  open();
  select_users({"ann", "cas"});
  go(lock_acc::kDisable, "This will disable all selected accounts\r\nPress 'OK' to continue");
  EXPECT_EQ(dialogs.last_title, "Modify Accounts");
  EXPECT_EQ(log(), kHeading + "Account Disabled for ann\nAccount Disabled for cas\n");
  go(lock_acc::kEnable, "This will enable all selected accounts");
  EXPECT_EQ(disabled(), Names());
  EXPECT_EQ(log_tab(), (std::vector<std::string>{"GREEN Disabled: 2 users", "GREEN Enabled: 2 users"}));
}

TEST_P(AccountFunctions, AUserInTwoSelectedGroupsIsDoneTwiceWithTwoLines) {
  join_readers({"ann"});
  group("Staff")->Add(path_of("ann"));
  open();
  select_readers();
  window.ListView1.add(is_nt() ? "Staff" : "LDAP://twk.test/CN=Staff,DC=twk,DC=test", "Staff",
                       is_nt() ? "Global" : "W2KGRP");
  go(lock_acc::kDisable);
  EXPECT_EQ(log(), kHeading + "Account Disabled for ann\nAccount Disabled for ann\n");
}

TEST_P(AccountFunctions, PasswordsAreSetToExpireAndNotTo) {
  open();
  select_users({"ann", "ben"});
  window.ctrChangePswd.value = 1;
  go(lock_acc::kPasswordNeverExpires, "This will set the password not to expire on all selected accounts");
  EXPECT_EQ(with_lasting_password(), (Names{"ann", "ben"}));
  EXPECT_TRUE(must_change("ann"));
  EXPECT_FALSE(must_change("cas"));
  int writes = 0;
  directory.before = [&](std::string_view operation, std::string_view) {
    writes += operation == "SetInfo" ? 1 : 0;
  };
  select_users({"cas"});
  go(lock_acc::kPasswordExpires, "This will set the password to expire on all selected accounts");
  EXPECT_EQ(with_lasting_password(), Names());
  EXPECT_EQ(writes, 2) << "whose password expires already is not written";
  EXPECT_THAT(log(), HasSubstr("Password now set to expire: cas\n"));
}

TEST_P(AccountFunctions, PasswordsAreResetToTheDefaultWithTheName) {
  set("Setup", "Password", "New-%UserName%-2026");
  open();
  add_user("bo");
  select_users({"bo"});
  go(lock_acc::kResetPassword, "This will reset the passwords on the selected accounts");
  EXPECT_TRUE(must_change("bo"));
  EXPECT_EQ(log_tab(), (std::vector<std::string>{"GREEN  Resetting Password for: bo"}));
  EXPECT_TRUE(takes("bo", "New-bo-2026"));
}

TEST_P(AccountFunctions, ARefusedPasswordBeepsAndTheNextOneIsSet) {
  set("Setup", "Password", "PROMPT");
  open();
  select_users({"ann", "ben"});
  window.LockAcc.index = lock_acc::kResetPassword;
  dialogs.expect("reset the passwords");
  dialogs.expect_input("Enter User Password:", "short");
  dialogs.expect_input("Enter User Password:", "Long-enough-1");
  windows::btnGo_Click(session);
  EXPECT_EQ(dialogs.beeps, 1);
  EXPECT_EQ(log(), kHeading + "Resetting Password for: ben\n");
  EXPECT_EQ(log_tab(), (std::vector<std::string>{"GREEN  Resetting Password for: ben"}));
  EXPECT_EQ(window.Label3.caption.get(), " Completed");
}

TEST_P(AccountFunctions, NothingIsDoneForNobodyOrWithoutAnOk) {
  open();
  window.Unlock_Stage = true;
  go(lock_acc::kDisable, {});
  EXPECT_EQ(log(), "");
  EXPECT_FALSE(window.Unlock_Stage);
  select_users({"ann"});
  go(lock_acc::kDisable, "disable", platform::Answer::kCancel);
  EXPECT_EQ(disabled(), Names());
  EXPECT_EQ(log(), kHeading);
  EXPECT_EQ(window.mouse_pointer, 0);
}

TEST_P(AccountFunctions, AFailureEndsTheWindowsRunAndIsReported) {
  open();
  select_users({"ann", "ben", "cas"});
  directory.before = test::fail_at("SetInfo", 2, platform::ads_error::kAccessDenied);
  go(lock_acc::kDisable);
  EXPECT_EQ(disabled(), Names{"ann"});
  EXPECT_EQ(window.Label3.caption.get(), "Error Retrieving Domain Info.");
  EXPECT_THAT(log(), HasSubstr("Account Disabled for ann\nError Retrieving Domain Info.\nError Number: "));
  EXPECT_THAT(log_tab(),
              testing::ElementsAre(
                  testing::StartsWith("RED  Error Retrieving Domain Info.: refused by the test: SetInfo"),
                  "GREEN Disabled: 1 user"));
  EXPECT_EQ(window.btnGo.caption.get(), "&Go");
  EXPECT_FALSE(windows::is_running(window));
}

TEST_P(AccountFunctions, WithHooksARefusedRowIsAnOutcomeAndTheRestContinues) {
  open();
  select_users({"ann", "ben", "cas"});
  directory.before = test::fail_at("SetInfo", 2, platform::ads_error::kAccessDenied);
  std::vector<std::string> told;
  RunHooks hooks;
  hooks.goes_on_after_failure = true;
  hooks.done = [&](const UserOutcome& outcome) {
    told.push_back(std::string(outcome.light) + " " + outcome.message);
  };
  test::KeptView view(session);
  EXPECT_TRUE(change_accounts(session, {AccountFunction::kDisable}, view, hooks));
  EXPECT_EQ(disabled(), (Names{"ann", "cas"}));
  ASSERT_EQ(told.size(), 3U);
  EXPECT_EQ(told[0], "GREEN Account Disabled for ann");
  EXPECT_THAT(told[1], testing::StartsWith("RED "));
  EXPECT_EQ(told[2], "GREEN Account Disabled for cas");
}

TEST_P(AccountFunctions, LockedAccountsAreFoundFirstAndUnlockedByTheNextGo) {
  lock({"ann", "cas"});
  open();
  ASSERT_EQ(locked(), (Names{"ann", "cas"}));
  go(lock_acc::kFindLocked, {});
  EXPECT_EQ(texts(window.ListView1), (Names{"ann", "cas"}));
  EXPECT_EQ(texts(window.ListView2), (Names{"ben", "dee"}));
  EXPECT_EQ(window.Label3.caption.get(), "Press 'G0' again to unlock selected accounts.");
  EXPECT_TRUE(window.Unlock_Stage);
  EXPECT_EQ(locked().size(), 2U);
  go(lock_acc::kFindLocked, {});
  EXPECT_EQ(locked(), Names());
  EXPECT_EQ(window.Label3.caption.get(), "Accounts Unlocked.");
  EXPECT_FALSE(window.Unlock_Stage);
  EXPECT_FALSE(must_change("ann"));
}

TEST_P(AccountFunctions, UnlockingCanSetNewPasswordsToo) {
  struct Case {
    std::string name;
    std::string setting;
    std::string typed;
    std::string password;
  };
  for (const Case& one : {Case{"bo", "%UserName%-Long-1", "", "bo-Long-1"},
                          Case{"1-gnoL-ddO", " %usernameb% ", "", "Odd-Long-1"},
                          Case{"bo", "prompt", "Typed-1234", "Typed-1234"}}) {
    MultiUserWorld world(GetParam());
    world.set("Setup", "Password", one.setting);
    world.add_user(one.name);
    world.open();
    world.select_users({one.name.c_str()});
    world.window.Unlock_Stage = true;
    world.window.Unlock_Reset.value = 1;
    if (!one.typed.empty())
      world.dialogs.expect_input("Enter User Password:", one.typed);
    world.window.LockAcc.index = lock_acc::kFindLocked;
    windows::btnGo_Click(world.session);
    EXPECT_EQ(world.window.Label3.caption.get(), "Accounts Unlocked.");
    EXPECT_TRUE(world.must_change(one.name)) << one.setting;
    EXPECT_TRUE(world.takes(one.name, one.password)) << one.setting;
  }
}

TEST_P(AccountFunctions, AnotherFunctionAndAnEmptySelectionEndTheStageOfUnlocking) {
  open();
  window.Unlock_Stage = true;
  go(lock_acc::kFindLocked, {});
  EXPECT_FALSE(window.Unlock_Stage);
  window.Unlock_Stage = true;
  select_users({"ann"});
  go(lock_acc::kEnable);
  EXPECT_FALSE(window.Unlock_Stage);
}

}  // namespace
}  // namespace twk::batch
