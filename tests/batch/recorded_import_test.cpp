#include <fstream>

#include "batch/import.hpp"
#include "batch/resume_import.hpp"
#include "batch/undo_import.hpp"
#include "local/system_clock.hpp"
#include "platform/utf16.hpp"
#include "support/lab_session.hpp"
#include "support/number_of.hpp"
#include "windows/create_user.hpp"
#include "windows/import.hpp"
#include "windows/state/form1.hpp"
#include "windows/state/import_windows.hpp"
#include "windows/undo_import.hpp"

namespace twk::batch {
namespace {

using lab::DomainKind;
using testing::ElementsAre;
using testing::HasSubstr;

constexpr std::string_view kRecord = "Import Record - 311226090500.jsonl";
constexpr std::string_view kRemaining = "Import Remaining - 311226090500.csv";

/// A lab whose template gives a home with a share, a profile and the group "Staff", and where a file was
/// imported.
class RecordedWorld : public test::LabSession {
 public:
  explicit RecordedWorld(DomainKind kind = DomainKind::kNative) : LabSession(kind) {
    staff.HomeDirPath = "D:\\Users\\%UserName%";
    staff.ProfileDirPath = "D:\\Profiles\\%UserName%";
    staff.HomeShare = "%UserName%$";
    staff.GroupCount = 1;
    staff.Groups[0] = "Staff";
    start();
    session.form1.Create_Dirs.value = 1;
    session.form1.Create_Shares.value = 1;
    session.import.row_done = [this](const session::ImportRow& row) {
      rows.push_back(base::to_text(row.line) + " " + row.outcome.light + " " + row.outcome.user);
    };
  }

  void import(std::string_view bytes) {
    std::ofstream(path(), std::ios::binary) << bytes;
    windows::Import_File(session, path());
  }
  [[nodiscard]] std::string path() const { return (folder.path() / "starters.csv").string(); }
  RecordedRun record() { return load_import_record(services.files, session.dbpath + std::string(kRecord)); }
  std::vector<std::string> undo() {
    std::vector<std::string> told;
    undo_import(session, record(), [&](const UndoneLine& undone) {
      told.push_back(base::to_text(undone.line.number) + " " + undone.outcome.light);
      for (const std::string& warning : undone.outcome.warnings)
        told.push_back(warning);
      return true;
    });
    return told;
  }
  [[nodiscard]] bool has_folder(const std::string& path) const {
    return std::filesystem::exists(folder.path() / "servers/FS1/D" / path);
  }

  std::vector<std::string> rows;
};

class InEachKindOfDomain : public testing::TestWithParam<DomainKind> {};
INSTANTIATE_TEST_SUITE_P(Kinds, InEachKindOfDomain, testing::Values(DomainKind::kNative, DomainKind::kNt),
                         test::kind_name);

TEST_P(InEachKindOfDomain, ARunThatIsTakenBackLeavesNothing) {
  RecordedWorld world(GetParam());
  world.import("Jo,,Smith\r\nalone\r\nJo,,Smith\r\nAnn,,Lee");
  EXPECT_EQ(world.database_file(kRemaining), "alone\nJo,,Smith\n");
  const RecordedRun run = world.record();
  std::vector<std::string> kinds;
  for (const RecordedThing& thing : run.lines.front().things)
    kinds.push_back(thing.kind);
  EXPECT_THAT(kinds, ElementsAre("folder", "folder", "account", "group", "share"));
  EXPECT_THAT(world.undo(), ElementsAre("4 GREEN", "1 GREEN"));
  for (const char* const name : {"Jo.Smith", "Ann.Lee"}) {
    EXPECT_NE(test::number_of([&] { static_cast<void>(world.account(name)); }), 0) << name;
    EXPECT_FALSE(world.has_folder(std::string("Users/") + name));
    EXPECT_FALSE(world.has_folder(std::string("Profiles/") + name));
  }
  // The same people again: they are another run's.
  world.import("Jo,,Smith\n");
  EXPECT_THAT(world.undo(), ElementsAre()) << "there is nothing left to take back";
  EXPECT_TRUE(world.has_folder("Users/Jo.Smith"));
}

TEST(RecordedImport, AnAccountIsFoundByItsIdentifierAndWhatOthersAddedStays) {
  RecordedWorld world;
  world.import("Jo,,Smith\nAnn,,Lee\n");
  world.place()->MoveHere("LDAP://CN=Jo.Smith," + std::string(test::kNewStarters), "CN=Jo West");
  std::ofstream(world.folder.path() / "servers/FS1/D/Users/Jo.Smith/letter.txt") << "x";
  world.place()->Delete("user", "CN=Ann.Lee");
  world.make_user("Ann.Lee");
  EXPECT_THAT(
      world.undo(),
      ElementsAre("2 YELLOW", "What bore the name Ann.Lee is kept: another account has that path by now",
                  "1 YELLOW",
                  "The folder \\\\FS1\\D$\\Users\\Jo.Smith is kept: someone has put 1 entry into it"));
  EXPECT_TRUE(world.has_folder("Users/Ann.Lee"));
  EXPECT_NE(test::number_of([&] { static_cast<void>(world.account("Jo.Smith")); }), 0);
  EXPECT_EQ(world.property("Ann.Lee", "samAccountName"), "Ann.Lee") << "someone else's by now";
  EXPECT_TRUE(world.has_folder("Users/Jo.Smith/letter.txt"));
}

TEST(RecordedImport, AnAccountOfAWinNtDomainIsFoundByItsIdentifierToo) {
  RecordedWorld world(DomainKind::kNt);
  world.import("Jo,,Smith\nAnn,,Lee\n");
  const platform::ObjectPtr account = world.account("Jo.Smith");
  world.directory.GetObject(account->Parent())->MoveHere(account->ADsPath(), "Jo.West");
  EXPECT_THAT(world.undo(), ElementsAre("2 GREEN", "1 GREEN"));
  EXPECT_NE(test::number_of([&] { static_cast<void>(world.account("Jo.West")); }), 0);
}

TEST(RecordedImport, AStoppedRunGoesOnAsItWasAskedForThen) {
  RecordedWorld world;
  const auto tell = world.session.import.row_done;
  world.session.import.row_done = [&](const session::ImportRow& row) {
    tell(row);
    world.session.import.ImportStopped = row.line == 2;
  };
  world.session.form1.STOP_ON_RED[0].value = 1;
  world.import("Jo,,Smith\nKim,,Ray\nJo,,Smith\nAnn,,Lee\n");
  EXPECT_EQ(world.database_file(kRemaining), "Jo,,Smith\nAnn,,Lee\n");
  const ResumedImport resumed = plan_resumption(world.session, world.record());
  EXPECT_EQ(resumed.file, world.path());
  EXPECT_THAT(resumed.order.made_before, ElementsAre(1, 2));
  EXPECT_TRUE(resumed.order.halt_on_errors);
  EXPECT_THAT(resumed.broken, ElementsAre());
  EXPECT_EQ(resumed.order.user.SelectedNodeKey, world.session.form1.TreeView1.selected()->key);

  // Taken up once more, by the same record: what the run in between made is not made again.
  windows::Desktop& session = world.session;
  session.import.row_done = tell;
  const std::string first = session.import.record_path;
  windows::NewUserView view(session.form1, true);
  EXPECT_TRUE(Import_Users(session, resumed.file, resumed.order, view));
  EXPECT_THAT(plan_resumption(session, load_import_record(world.services.files, first)).order.made_before,
              ElementsAre(1, 2, 4));

  std::ofstream(world.path(), std::ios::app) << "Lou,,Gray\n";
  EXPECT_EQ(test::number_of([&] { plan_resumption(world.session, world.record()); }),
            base::error::kTypeMismatch);
}

TEST(RecordedImport, ItsRowInTheLogTabTakesItBackAfterAQuestion) {
  RecordedWorld world;
  world.import("Jo,,Smith\n");
  controls::ListView& log = world.session.log_rows;
  EXPECT_FALSE(windows::is_of_import(&log.at(0)));
  log.select(&log.at(log.size() - 1));
  ASSERT_TRUE(windows::is_of_import(log.selected()));
  world.dialogs.expect(undo_question(world.record()), platform::Answer::kNo);
  windows::undo_import(world.session);
  EXPECT_EQ(world.property("Jo.Smith", "samAccountName"), "Jo.Smith");
  world.dialogs.expect(
      "Take back the import of 31/12/2026 09:05:00: 1 account, 2 folders, 1 share and 0 mailboxes?",
      platform::Answer::kYes);
  windows::undo_import(world.session);
  EXPECT_THAT(world.session.status.panel1.get(), testing::StartsWith("1 users taken back, 0 not."));
  EXPECT_THAT(world.log_tab(), testing::Contains(HasSubstr("Jo.Smith Taken Back")));
}

TEST(RecordedImport, ABrokenLineIsTakenBackUnlessItsAccountIsOlderOrYounger) {
  RecordedWorld world;
  world.import("Jo,,Smith\n");
  const std::string path = "LDAP://CN=Jo.Smith," + std::string(test::kNewStarters);
  RecordedLine line{.number = 1,
                    .user = "Jo.Smith",
                    .begun = path,
                    .begun_at = base::to_filetime(local::SystemClock().utc_now())};
  for (const std::int64_t seconds : {600, -900}) {
    line.begun_at += seconds * 10'000'000;
    EXPECT_FALSE(take_back(world.session, line).done);
    EXPECT_EQ(world.property("Jo.Smith", "samAccountName"), "Jo.Smith");
    line.begun_at -= seconds * 10'000'000;
  }
  EXPECT_TRUE(take_back(world.session, line).done);
  EXPECT_NE(test::number_of([&] { static_cast<void>(world.account("Jo.Smith")); }), 0);
}

/// Where the domain tells when it was made.
TEST_P(InEachKindOfDomain, AnAccountThatALostServerMadeWithoutAnAnswerIsTakenBack) {
  RecordedWorld world(GetParam());
  world.directory.before = [](std::string_view call, std::string_view /*path*/) {
    if (call == "SetInfo")
      base::raise(platform::ads_error::kServerDown, "No answer");
  };
  for (int line = 0; line < 2 && !world.is_nt(); ++line)
    world.dialogs.expect("No answer", platform::Answer::kOk);
  world.import("Jo,,Smith\nAnn,,Lee\n");
  world.directory.before = nullptr;
  world.make_user("Jo.Smith");
  RecordedRun run = world.record();
  for (RecordedLine& line : run.lines)  // accounts have the date of the lab's own clock
    line.begun_at = base::to_filetime(local::SystemClock().utc_now());
  const ResumedImport resumed = plan_resumption(world.session, run);
  ASSERT_EQ(resumed.broken.size(), 1U) << testing::PrintToString(world.rows);
  EXPECT_EQ(take_back_broken_line(world.session, resumed, resumed.broken.front()).done, !world.is_nt());
  EXPECT_EQ(test::number_of([&] { static_cast<void>(world.account("Jo.Smith")); }) == 0, world.is_nt());
}

TEST(RecordedImport, AnAccountThatALostFileServerLeftUnfinishedIsMadeAgain) {
  RecordedWorld world;
  world.import("Jo,,Smith\nAnn,,Lee\n");
  RecordedRun run = world.record();
  ASSERT_EQ(run.lines.size(), 2U);
  EXPECT_FALSE(run.lines.back().unfinished);
  run.lines.back().unfinished = true;
  const ResumedImport resumed = plan_resumption(world.session, run);
  ASSERT_EQ(resumed.broken.size(), 1U);
  EXPECT_EQ(resumed.order.made_before, std::set<std::int32_t>{run.lines.front().number});
  EXPECT_TRUE(take_back_broken_line(world.session, resumed, resumed.broken.front()).done);
  EXPECT_NE(test::number_of([&] { static_cast<void>(world.account("Ann.Lee")); }), 0);
}

TEST(RecordedImport, TheRemainingLinesKeepEncodingHeadingAndQuotes) {
  RecordedWorld world;
  const std::string text = "First name;Last name\r\nZoë;Ray\r\nJo;Smith\r\nZoë;\"Ray\"\r\nZoë;Ray\r\n";
  const auto wide = [](std::string_view utf8) {
    const base::Bytes units = platform::to_utf16(utf8);
    return "\xFF\xFE" + std::string(units.begin(), units.end());
  };
  world.session.csv_import.chkCsv.value = 1;
  world.session.import.ImportDefaultLayout = false;
  world.session.import.ImportFirstField = 1;
  world.session.import.ImportLastField = 2;
  world.import(wide(text));
  EXPECT_EQ(world.services.files.read(world.session.dbpath + std::string(kRemaining)),
            wide("First name;Last name\r\nZoë;\"Ray\"\r\nZoë;Ray\r\n"))
      << testing::PrintToString(world.rows);
}

TEST(RecordedImport, ARecordIsReadAsFarAsItWasWrittenAndOthersAreRefused) {
  const std::string first = R"({"record":"import","version":1,"domain":"twk.test"})"
                            "\n";
  const RecordedRun run = read_import_record(first +
                                             R"({"line":2,"user":"Jo","begins":"LDAP://CN=Jo"})"
                                             "\n" +
                                             R"({"line":2,"made":"acc)");
  ASSERT_NE(run.broken_line(), nullptr);
  EXPECT_EQ(run.broken_line()->begun, "LDAP://CN=Jo");
  for (const std::string& bytes : {std::string(), std::string("x\n"), first + "x\n",
                                   std::string(R"({"record":"import","version":2})") + "\n"})
    EXPECT_EQ(test::number_of([&] { read_import_record(bytes); }), base::error::kTypeMismatch) << bytes;
}

}  // namespace
}  // namespace twk::batch
