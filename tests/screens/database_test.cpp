#include "records/records.hpp"
#include "screens/screen_test.hpp"

namespace twk::test {
namespace {

class DatabaseCommands : public ScreenTest {
 protected:
  void trigger(const char* menu_entry) {
    auto* const entry = window->findChild<QAction*>(menu_entry);
    ASSERT_NE(entry, nullptr) << menu_entry;
    ASSERT_TRUE(entry->isEnabled());
    entry->trigger();
  }
  std::string database_bytes(const std::string& file) {
    return get_file(lab.session.program_directory + "/" + file);
  }
};

TEST_F(DatabaseCommands, CompactionPrunesAGroupThatIsGoneWhenBothQuestionsAreAnsweredYes) {
  lab.staff.GroupCount = 2;
  lab.staff.Groups = {"Gone", "Staff"};
  open();
  expect_box("Are you sure you want to continue ?", QMessageBox::Yes);
  expect_box("Do you want to remove groups from the templates that no longer exist ?", QMessageBox::Yes);
  trigger("mnuOption6");
  const records::TemplateRecord compacted = records::decode_template(database_bytes("Template.dat"));
  EXPECT_EQ(compacted.GroupCount, 1);
  EXPECT_EQ(compacted.Groups[0], "Staff");
  EXPECT_EQ(status(), "Completed.");
}

TEST_F(DatabaseCommands, CompactionAnsweredNoLeavesTheFile) {
  open();
  const std::string before = database_bytes("Template.dat");
  expect_box("Are you sure you want to continue ?", QMessageBox::No);
  trigger("mnuOption6");
  EXPECT_EQ(database_bytes("Template.dat"), before);
}

TEST_F(DatabaseCommands, BackupMakesCopiesNextToTheFiles) {
  open();
  trigger("mnuFile3");
  EXPECT_EQ(database_bytes("site.bak"), database_bytes("Site.dat"));
  EXPECT_EQ(database_bytes("template.bak"), database_bytes("Template.dat"));
  EXPECT_EQ(status(), "Databases Backed up ( *.BAK)...");
}

}  // namespace
}  // namespace twk::test
