#include "batch/delete_users.hpp"

#include "base/errors.hpp"
#include "batch/multi_user_world.hpp"
#include "session/settings.hpp"
#include "windows/multi_user/delete_options.hpp"
#include "windows/multi_user/delete_tab.hpp"
#include "windows/state/form1.hpp"
#include "windows/state/multi_user.hpp"

namespace twk::batch {
namespace {

using test::InEveryKindOfDomain;
using test::MultiUserWorld;
using testing::HasSubstr;
using Names = std::set<std::string>;

class DeleteUsers : public InEveryKindOfDomain {};
INSTANTIATE_TEST_SUITE_P(Kinds, DeleteUsers, test::kKinds, test::kind_name);

/// Only accounts go, and nobody asks.
void open_to_delete(MultiUserWorld& world) {
  world.open();
  world.window.Delete_NT_Account.value = 1;
  world.window.No_Prompting.value = 1;
}

TEST_P(DeleteUsers, EachIsAskedAboutAndANoKeepsTheRow) {
  MultiUserWorld world(GetParam());
  open_to_delete(world);
  world.window.No_Prompting.value = 0;
  world.session.form1.Confirm_Deletes.value = 1;
  world.select_users({"ann", "ben"});
  world.dialogs.expect("Delete User " + world.key("ann"), platform::Answer::kNo);
  world.dialogs.expect("Delete User " + world.key("ben"), platform::Answer::kYes);
  windows::Del_User_Click(world.session);
  EXPECT_EQ(world.texts(world.window.ListView1), (Names{"ann", "ben (gone)"}));
  EXPECT_TRUE(world.has("ann"));
}

TEST(DeleteUsersOfADirectory, MailNeedsAServerBeforeAnythingStarts) {
  MultiUserWorld world;
  open_to_delete(world);
  windows::Del_User_Click(world.session);
  EXPECT_EQ(world.log(), "") << "nobody is selected";
  world.select_users({"ann"});
  world.window.Delete_Mail.value = 1;
  world.window.EX_Server.text = std::string(" ");
  world.dialogs.expect("Must Select Users Exchange Server to \r\nDelete Mail Account");
  windows::Del_User_Click(world.session);
  EXPECT_EQ(world.dialogs.last_title, "Delete Mail Account");
  EXPECT_TRUE(world.has("ann"));
}

TEST(DeleteOptions, AreReadOnceAndStoredByEachClick) {
  MultiUserWorld world;
  world.set("DU", "DeleteNT", "Yes");
  world.set("DU", "DeleteData", "yes");
  world.set("DU", "TakeOwnership", "Yes");
  world.set("DU", "DeleteMail", "No");
  world.open();
  windows::MultiUser& window = world.window;
  EXPECT_TRUE(window.Delete_NT_Account.on() && window.Delete_Data.on() && window.Del_Permissions.on());
  EXPECT_TRUE(window.Del_Shares.on()) << "the folders are found where the shares are looked at";
  EXPECT_FALSE(window.Del_Shares.enabled);
  EXPECT_FALSE(window.EX_Server.enabled);

  window.Delete_Data.value = 0;
  windows::Delete_Data_Click(world.session);
  EXPECT_FALSE(window.Del_Permissions.on());
  EXPECT_FALSE(window.Del_Permissions.enabled);
  EXPECT_TRUE(window.Del_Shares.enabled);
  window.Delete_Mail.value = 1;
  windows::Delete_Mail_Click(world.session);
  EXPECT_TRUE(window.EX_Server.enabled);
  window.Delete_NT_Account.value = 0;
  windows::Delete_NT_Account_Click(world.session);
  windows::Run_command_Click(world.session);
  windows::Del_Shares_Click(world.session);
  windows::Del_Permissions_Click(world.session);
  const auto stored = [&](std::string_view name) {
    return session::read_setting(world.session, session::kDU, name);
  };
  EXPECT_EQ(stored("DeleteData"), "No");
  EXPECT_EQ(stored("DeleteMail"), "Yes");
  EXPECT_EQ(stored("DeleteNT"), "No");
  EXPECT_EQ(stored("Runcmd"), "No");
  EXPECT_EQ(stored("DeleteShares"), "Yes");
  EXPECT_EQ(stored("TakeOwnership"), "No");
}

TEST(DeleteOptions, SilenceIsWarnedOfWhenItIsTicked) {
  MultiUserWorld world;
  world.open();
  windows::No_Prompting_Click(world.session);
  world.window.No_Prompting.value = 1;
  world.window.No_Prompt.value = 1;
  const std::string text =
      "This Over rides the preferences setting. Be careful using\r\nthis option as TWK will not prompt when "
      "deleting user directories.\r\n\r\nOnly use this setting if you are sure the Usermanger settings are "
      "correct for all users.\r\nMake sure you have a current backup.";
  world.dialogs.expect(text);
  windows::No_Prompting_Click(world.session);
  EXPECT_EQ(world.dialogs.last_title, "Warning");
  world.dialogs.expect(text);
  windows::No_Prompt_Click(world.session);
}

}  // namespace
}  // namespace twk::batch
