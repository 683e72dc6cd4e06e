#include "windows/manage_ou.hpp"

#include "session/settings.hpp"
#include "support/lab_session.hpp"
#include "windows/refresh.hpp"
#include "windows/start_up.hpp"
#include "windows/state/directory_windows.hpp"
#include "windows/state/form1.hpp"

namespace twk::windows {
namespace {

using test::kNewStarters;
using test::LabSession;

class ManageOu : public testing::Test {
 protected:
  std::string stored(std::string_view name, std::uint32_t hive) {
    return session::read_setting(lab.session, session::kSetup, name, hive);
  }
  LabSession lab;
  windows::Form1& form = lab.session.form1;
  windows::Select_OU& window = lab.session.select_ou;
};

class ManageOuInAHive : public ManageOu, public testing::WithParamInterface<int> {};
INSTANTIATE_TEST_SUITE_P(Hives, ManageOuInAHive, testing::Values(0, 1));

TEST_P(ManageOuInAHive, LimitsTheNextLoadAndTheNextStartUntilItIsLifted) {
  const std::uint32_t hive = GetParam() == 1 ? platform::kHiveLocalMachine : platform::kHiveCurrentUser;
  lab.start();
  int shown = 0;
  lab.dialogs.on_modal = [&](std::string_view name) {
    ++shown;
    EXPECT_EQ(name, "Select_OU");
    EXPECT_EQ(window.OU.caption.get(), "Manage this OU: New Starters");
    EXPECT_TRUE(window.SUBOU.on());
    window.REG_KEY.index = GetParam();
    Select_OU_OK_Click(lab.session);
  };
  Manage_OU(lab.session);
  EXPECT_EQ(shown, 1);
  EXPECT_EQ(stored("OU", hive), kNewStarters);
  EXPECT_EQ(stored("SUBOU", hive), "Yes");
  EXPECT_FALSE(form.mnuOption[5].enabled);
  EXPECT_FALSE(form.DomName.enabled);
  EXPECT_EQ(form.TreeView1.first()->image, "DOMAIN") << "only the next load is limited";

  windows::Refresh(lab.session);
  EXPECT_EQ(form.TreeView1.first()->key, kNewStarters);
  EXPECT_TRUE(form.mnuOption[5].enabled) << "the limit can be lifted";
  EXPECT_FALSE(form.DomName.enabled);

  windows::Desktop later(lab.session.platform, "", lab.session.program_directory);
  ASSERT_EQ(windows::start_session(later), windows::StartUp::kReady);
  EXPECT_EQ(later.form1.TreeView1.first()->key, kNewStarters);
  later.form1.TreeView1.select(later.form1.TreeView1.first());
  Manage_OU(later);
  EXPECT_EQ(later.form1.TreeView1.first()->image, "DOMAIN");
  EXPECT_TRUE(later.form1.DomName.enabled);
  EXPECT_TRUE(later.form1.mnuOption[5].enabled);

  windows::Desktop latest(lab.session.platform, "", lab.session.program_directory);
  ASSERT_EQ(windows::start_session(latest), windows::StartUp::kReady);
  EXPECT_EQ(latest.form1.TreeView1.first()->image, "DOMAIN");
}

TEST_F(ManageOu, OfASingleOuShowsNothingBelowIt) {
  lab.start();
  lab.dialogs.on_modal = [&](std::string_view) {
    window.SUBOU.value = 0;
    Select_OU_OK_Click(lab.session);
  };
  Manage_OU(lab.session);
  EXPECT_EQ(stored("SUBOU", platform::kHiveCurrentUser), "No");
  EXPECT_FALSE(lab.session.ManageSubOUs);
  windows::Refresh(lab.session);
  Manage_OU(lab.session);
  EXPECT_TRUE(lab.session.ManageSubOUs) << "a limit that is lifted leaves no other behind";
  EXPECT_GT(form.TreeView1.first()->children.size(), 1U);
}

TEST_F(ManageOu, AsksForAnOuAndACancelledWindowChangesNothing) {
  lab.start();
  form.TreeView1.select(form.TreeView1.first());
  lab.dialogs.expect("To manage a single OU, by only allowing TWK");
  Manage_OU(lab.session);
  EXPECT_EQ(lab.dialogs.last_title, "Manage OU");
  lab.select(kNewStarters);
  lab.dialogs.on_modal = [](std::string_view) {};
  Manage_OU(lab.session);
  EXPECT_TRUE(lab.session.ManagedOU.empty());
  EXPECT_TRUE(form.DomName.enabled);
}

TEST_F(ManageOu, APersonsChoiceCountsDespiteAnEmptyOneOfTheMachine) {
  lab.set("Setup", "OU", "");
  session::write_setting(lab.session, session::kSetup, "OU", kNewStarters, platform::kHiveCurrentUser);
  ASSERT_EQ(windows::start_session(lab.session), windows::StartUp::kReady);
  EXPECT_EQ(lab.session.ManagedOU, kNewStarters);
}

}  // namespace
}  // namespace twk::windows
