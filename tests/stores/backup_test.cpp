#include "stores/backup.hpp"

#include <filesystem>

#include "support/world.hpp"

namespace twk::stores {
namespace {

using BackupTest = test::TestWorld;

TEST_F(BackupTest, EveryFileHasItsCopyOverAnOlderOne) {
  const std::vector<std::pair<std::string, std::string>> copies = {{"Site.dat", "site.bak"},
                                                                   {"Template.dat", "template.bak"},
                                                                   {"Mail.dat", "mail.bak"},
                                                                   {"WTS.dat", "WTS.bak"},
                                                                   {"Permissions.dat", "Permissions.bak"},
                                                                   {"W2K.dat", "W2K.bak"},
                                                                   {"SharePerm.dat", "SharePerm.bak"}};
  for (const auto& [source, copy] : copies)
    put(source, std::string("\0\xFC of ", 5) + source);
  put("site.bak", "an older and much longer copy of the sites");
  Backup_Databases(session);
  for (const auto& [source, copy] : copies) {
    EXPECT_EQ(get(copy), std::string("\0\xFC of ", 5) + source) << copy;
    EXPECT_EQ(get(source), get(copy));
  }
  EXPECT_EQ(status(), "Databases Backed up ( *.BAK)...");
}

TEST_F(BackupTest, MissingFileIsSkippedAndItsOlderCopyStays) {
  put("Mail.dat", "a,b\r\n");
  put("WTS.bak", "older");
  Backup_Databases(session);
  EXPECT_EQ(get("mail.bak"), "a,b\r\n");
  EXPECT_EQ(get("WTS.bak"), "older");
  EXPECT_FALSE(files.exists(database / "site.bak"));
  EXPECT_EQ(status(), "Databases Backed up ( *.BAK)...");
}

TEST_F(BackupTest, FailedCopyIsReportedByNameAndTheOthersAreStillCopied) {
  put("Site.dat", "sites");
  put("Mail.dat", "a,b\r\n");
  std::filesystem::create_directory(std::string(database / "site.bak"));
  dialogs.expect("Cannot back up Site.dat to site.bak.");
  Backup_Databases(session);
  EXPECT_EQ(get("mail.bak"), "a,b\r\n");
  EXPECT_EQ(status(), "Not all databases could be backed up.");
}

TEST_F(BackupTest, FullDiskLeavesTheOlderCopy) {
  put("Site.dat", "sites");
  put("site.bak", "older");
  files.fail_from(2, 61);
  dialogs.expect("the disk refuses");
  Backup_Databases(session);
  EXPECT_EQ(get("site.bak"), "older");
  EXPECT_EQ(get("Site.dat"), "sites");
}

}  // namespace
}  // namespace twk::stores
