#include "windows/editors/permissions_window.hpp"

#include "stores/side_tables.hpp"
#include "support/world.hpp"
#include "windows/state/editor_windows.hpp"

namespace twk::windows {
namespace {

using records::PermissionRecord;

class PermissionsWindowTest : public test::TestWorld {
 protected:
  /// The person at the window, who presses OK at the end.
  void person(std::function<void()> acts) {
    dialogs.on_modal = [this, acts = std::move(acts)](std::string_view shown) {
      EXPECT_EQ(shown, "Permissions");
      acts();
      closed = Permissions_OK_Button_Click(session);
    };
  }
  void add(const std::string& account) {
    Permissions_Command4_Click(session);
    Permissions_AfterLabelEdit(session, *window.ListView1.selected(), account);
  }
  void choose(std::string_view access) {
    window.Access.text = std::string(access);
    Permissions_Access_Click(session);
  }
  std::vector<PermissionRecord> table(std::string_view file) {
    return stores::read_permissions(session, file);
  }

  windows::Permissions& window = session.permissions;
  bool closed = false;
};

TEST_F(PermissionsWindowTest, RowsOwnerAndTheBoxAreWrittenIntoEachRecord) {
  person([&] {
    EXPECT_EQ(window.title.caption.get(), "Directory Permissions");
    EXPECT_TRUE(window.ctrOwner.visible.get());
    EXPECT_FALSE(window.Access.enabled.get());
    add(" %UserName% ");
    choose("Change");
    add("Domain Admins");
    window.NEW_Security.value = 1;
    window.ctrOwner.text = std::string(" Administrators ");
  });
  Set_Security_Click(session);
  EXPECT_TRUE(closed);
  const std::vector<PermissionRecord> wanted = {{true, "%UserName%", "Change", "Administrators"},
                                                {true, "Domain Admins", "Read", "Administrators"}};
  EXPECT_EQ(table("Permissions.dat"), wanted);

  person([&] {
    EXPECT_TRUE(window.NEW_Security.on());
    EXPECT_EQ(window.ctrOwner.text.get(), "Administrators");
    EXPECT_EQ(window.Access.text.get(), "Change") << "the first row is selected";
    Permissions_Command3_Click(session);
  });
  Set_Security_Click(session);
  EXPECT_EQ(test::texts(window.ListView1), std::vector<std::string>{"Domain Admins"});
  EXPECT_EQ(table("Permissions.dat"), std::vector<PermissionRecord>{wanted[1]});
}

TEST_F(PermissionsWindowTest, AShareTableWithoutRowsGetsEveryone) {
  person([&] {
    EXPECT_EQ(window.title.caption.get(), "Share Permissions");
    EXPECT_FALSE(window.NEW_Security.visible.get());
    EXPECT_FALSE(window.ctrOwner.visible.get());
    EXPECT_FALSE(window.Label2.visible.get());
  });
  Sharepermissions_Click(session);
  EXPECT_EQ(table("SharePerm.dat"), (std::vector<PermissionRecord>{{false, "Everyone", "Full Control", ""}}));
  EXPECT_FALSE(files.exists(database / "Permissions.dat"));
}

TEST_F(PermissionsWindowTest, AWordThatOtherMeansWroteIsKept) {
  stores::write_permissions(session, "Permissions.dat",
                            std::vector<PermissionRecord>{{false, "Guests", "No Access", ""}});
  person([&] { EXPECT_EQ(window.Access.text.get(), "No Access"); });
  Set_Security_Click(session);
  EXPECT_EQ(table("Permissions.dat").front().Access, "No Access");
}

TEST_F(PermissionsWindowTest, AnAccountThatCannotBeStoredLeavesNoRow) {
  person([&] {
    add("");
    add(std::string(51, 'a'));
    EXPECT_EQ(window.hint.caption.get(), "An account has at most 50 characters.");
    add("a\tb");
    EXPECT_EQ(window.hint.caption.get(), "Control character U+0009 not allowed");
    EXPECT_TRUE(window.ListView1.empty());
    add("Staff");
    EXPECT_EQ(window.hint.caption.get(), "");
    Permissions_AfterLabelEdit(session, *window.ListView1.selected(), " ");
  });
  Set_Security_Click(session);
  EXPECT_EQ(table("Permissions.dat"), (std::vector<PermissionRecord>{{false, "Staff", "Read", ""}}));
}

TEST_F(PermissionsWindowTest, AnOwnerThatWouldBeLostOrCutIsRefused) {
  person([&] {
    window.ctrOwner.text = std::string("Administrators");
    dialogs.expect("add at least one");
    EXPECT_FALSE(Permissions_OK_Button_Click(session));
    add("Staff");
    window.ctrOwner.text = std::string(51, 'a');
    dialogs.expect("Owner: An account has at most 50 characters.");
  });
  Set_Security_Click(session);
  EXPECT_FALSE(closed);
  EXPECT_FALSE(files.exists(database / "Permissions.dat"));
}

TEST_F(PermissionsWindowTest, ATableThatCannotBeReadIsReportedAndNothingOpens) {
  stores::write_permissions(session, "Permissions.dat",
                            std::vector<PermissionRecord>(3, {false, "a", "Read", ""}));
  dialogs.on_modal = [](std::string_view) { ADD_FAILURE() << "opened"; };
  files.fail_from(1, base::error::kPathFileAccess);
  dialogs.expect("Error Opening Permissions.dat");
  Set_Security_Click(session);
}

TEST_F(PermissionsWindowTest, ATableThatCannotBeWrittenKeepsTheWindowOpen) {
  person([&] {
    add("Staff");
    files.fail_from(1, base::error::kDiskFull);
  });
  dialogs.expect("Error Opening Permissions.dat");
  Set_Security_Click(session);
  EXPECT_FALSE(closed);
  EXPECT_EQ(test::texts(window.ListView1), std::vector<std::string>{"Staff"});
}

}  // namespace
}  // namespace twk::windows
