#include "windows/compact_database.hpp"

#include "stores/compact_database.hpp"

#include "session/settings.hpp"
#include "support/lab_session.hpp"
#include "windows/state/editor_windows.hpp"
#include "windows/state/form1.hpp"

namespace twk::windows {
namespace {

using platform::Answer;

constexpr const char* kSure = "This could take a few minutes. \r\nAre you sure you want to continue ?";
constexpr const char* kPrune =
    "Do you want to remove groups from the templates that no longer exist ? \r\n\r\n"
    "You should answer no if you manage mutliple Domains!!!";

records::SiteRecord site(std::string name, bool deleted = false) {
  records::SiteRecord record;
  record.Name = std::move(name);
  record.NTServer = "FS1";
  record.Deleted = deleted;
  return record;
}

records::TemplateRecord staff_of(std::string name, const std::vector<std::string>& groups,
                                 bool deleted = false) {
  records::TemplateRecord record;
  record.Name = std::move(name);
  record.Deleted = deleted;
  record.GroupCount = static_cast<std::int16_t>(groups.size());
  std::copy(groups.begin(), groups.end(), record.Groups.begin());
  return record;
}

class CompactionTest : public testing::Test {
 protected:
  CompactionTest() {
    world.start();
    put("Site.dat", old_sites);
    put("Template.dat", old_templates);
  }
  [[nodiscard]] std::string path(std::string_view file) {
    return world.session.program_directory + "/" + std::string(file);
  }
  void put(std::string_view file, std::string_view bytes) { test::put_file(path(file), bytes); }
  std::string get(std::string_view file) { return test::get_file(path(file)); }
  void expect_untouched() {
    EXPECT_EQ(get("Site.dat"), old_sites);
    EXPECT_EQ(get("Template.dat"), old_templates);
  }
  std::string status() { return world.session.form1.StatusBar1.panel1; }

  const std::string old_sites =
      records::encode_site(site("Gone", true)) + records::encode_site(site("London")) +
      records::encode_site(site("Gone too", true)) + records::encode_site(site("Paris"));
  const std::string new_sites = records::encode_site(site("London")) + records::encode_site(site("Paris"));
  const std::string old_templates =
      records::encode_template(staff_of("Old", {"Lost"}, true)) +
      records::encode_template(staff_of("Staff", {"Lost", "Staff", "Left", "Readers"})) +
      records::encode_template(staff_of("Plain", {}));
  const std::string kept_templates = old_templates.substr(records::kTemplateRecordSize);
  const std::string pruned_templates = records::encode_template(staff_of("Staff", {"Staff", "Readers"})) +
                                       records::encode_template(staff_of("Plain", {}));
  test::LabSession world;
};

TEST_F(CompactionTest, DeletedRecordsGoAndGroupsThatAreNoMoreArePruned) {
  world.dialogs.expect(kSure, Answer::kYes);
  world.dialogs.expect(kPrune, Answer::kYes);
  EXPECT_TRUE(Compact_Database(world.session));
  EXPECT_EQ(get("Site.dat"), new_sites);
  EXPECT_EQ(get("Template.dat"), pruned_templates);
  EXPECT_EQ(status(), "Completed.");
  EXPECT_EQ(world.session.form1.mouse_pointer, 0);
  EXPECT_EQ(world.log_tab().back(), "GREEN  Database Compacted");
  const std::string log = world.log();
  EXPECT_NE(
      log.find("\nStart Compact\nOld Deleted.\n \nChecking template Staff\nGlobal Group Removed : Lost\n"
               "Global Group Removed : Left\n \nChecking template Plain\n \nCompact Finished.\n"),
      base::npos)
      << log;
}

TEST_F(CompactionTest, AnswerNoTouchesNothingOrKeepsGroupsOfOtherDomains) {
  world.dialogs.expect(kSure, Answer::kNo);
  EXPECT_FALSE(Compact_Database(world.session));
  expect_untouched();
  world.dialogs.expect(kSure, Answer::kYes);
  world.dialogs.expect(kPrune, Answer::kNo);
  EXPECT_TRUE(Compact_Database(world.session));
  EXPECT_EQ(get("Template.dat"), kept_templates);
}

TEST_F(CompactionTest, DomainThatIsNotReachedLeavesBothFiles) {
  world.session.DomainName = "nowhere.test";
  world.dialogs.expect("Can't find nowhere.test Domain.\r\nWill not compact Database.");
  EXPECT_FALSE(stores::compact_database(world.session, stores::Pruning::kRemoveGroups));
  EXPECT_EQ(world.dialogs.last_title, "Can't Find Domain Controller");
  EXPECT_EQ(world.session.form1.mouse_pointer, 0);
  expect_untouched();
}

TEST_F(CompactionTest, OnlyDeletedRecordsMakeAnEmptyFileAndAMissingFileIsNotMade) {
  put("Site.dat", records::encode_site(site("Gone", true)) + records::encode_site(site("Gone", true)));
  world.services.files.remove(path("Template.dat"));
  EXPECT_TRUE(stores::compact_database(world.session, stores::Pruning::kKeepGroups));
  EXPECT_EQ(get("Site.dat"), "");
  EXPECT_FALSE(world.files.exists(path("Template.dat")));
}

TEST_F(CompactionTest, GroupsThatWereNotLoadedAreNotPruned) {
  world.set(session::kADO, "SkipGroups", "TRUE");
  world.dialogs.expect("The groups of the domain are not loaded");
  EXPECT_TRUE(stores::compact_database(world.session, stores::Pruning::kRemoveGroups));
  EXPECT_EQ(get("Site.dat"), new_sites);
  EXPECT_EQ(get("Template.dat"), kept_templates);
}

TEST_F(CompactionTest, FailureAtAnyCallLeavesEachFileWhole) {
  world.files.fail_from(0, 0);
  ASSERT_TRUE(stores::compact_database(world.session, stores::Pruning::kRemoveGroups));
  const int calls = world.files.calls();
  ASSERT_GT(calls, 8);
  for (int call = 1; call <= calls; ++call) {
    put("Site.dat", old_sites);
    put("Template.dat", old_templates);
    world.files.fail_from(call, 61);
    world.dialogs.expect("Error Compacting Database\r\nthe disk refuses");
    const bool done = stores::compact_database(world.session, stores::Pruning::kRemoveGroups);
    world.files.fail_from(0, 0);
    EXPECT_FALSE(done) << "call " << call;
    const std::string sites = get("Site.dat");
    const std::string templates = get("Template.dat");
    EXPECT_TRUE(sites == old_sites || sites == new_sites) << "call " << call;
    EXPECT_TRUE(templates == old_templates || templates == pruned_templates) << "call " << call;
  }
}

}  // namespace
}  // namespace twk::windows
