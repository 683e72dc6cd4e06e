#include "windows/import.hpp"

#include <fstream>

#include "batch/import_file.hpp"
#include "controls/tree_view.hpp"
#include "directory/account_expiry.hpp"
#include "support/lab_session.hpp"
#include "support/number_of.hpp"
#include "windows/csv_layout.hpp"
#include "windows/state/form1.hpp"
#include "windows/state/import_windows.hpp"

namespace twk::batch {
namespace {

using lab::DomainKind;
using test::LabSession;
using testing::AllOf;
using testing::ElementsAre;
using testing::HasSubstr;
using testing::IsSupersetOf;
using testing::Not;
using windows::chkImport_Click;
using windows::csv_layout_ok;
using windows::load_csv_layout;

constexpr std::string_view kErrorHeading =
    "*****************************************\n31/12/2026 09:05:00\n"
    "The following users were not created.\n*****************************************\n";
constexpr std::string_view kSummary = "Import Summary - 311226090500.csv";
constexpr std::string_view kSummaryHeading = "Full Name,WinNT logon,W2K logon,ERRORS\n";

/// A lab that imports from a file with the given bytes.
class ImportWorld : public LabSession {
 public:
  /// Started with the settings that are given and what `prepare` does before.
  explicit ImportWorld(DomainKind kind = DomainKind::kNative,
                       std::initializer_list<test::StartedLab::Setting> settings = {},
                       const std::function<void(LabSession&)>& prepare = {})
      : LabSession(kind) {
    session.import.row_done = [this](const session::ImportRow& row) {
      rows.push_back(base::to_text(row.line) + " " + row.outcome.light + " " + row.outcome.user);
    };
    for (const auto& [sub_key, name, value] : settings)
      set(sub_key, name, value);
    if (prepare)
      prepare(*this);
    start();
  }

  std::string file(std::string_view bytes) {
    const std::string path = (folder.path() / "starters.csv").string();
    std::ofstream(path, std::ios::binary) << bytes;
    return path;
  }
  bool import(std::string_view bytes) { return windows::Import_File(session, file(bytes)); }
  bool import_errors() { return windows::Import_File(session, session.dbpath + "Import.err"); }
  std::string errors() { return database_file("Import.err"); }
  std::string summary() { return database_file(kSummary); }

  std::vector<std::string> rows;
};

/// The table of directory properties has this row.
std::function<void(LabSession&)> with_property(const std::string& row) {
  return [row](LabSession& lab) {
    lab.services.files.write(lab.session.program_directory + "\\W2K.dat", row + "\r\n");
  };
}

class ImportInEveryKindOfDomain : public testing::TestWithParam<DomainKind> {};
INSTANTIATE_TEST_SUITE_P(Kinds, ImportInEveryKindOfDomain,
                         testing::Values(DomainKind::kNative, DomainKind::kMixed, DomainKind::kNt),
                         test::kind_name);

TEST_P(ImportInEveryKindOfDomain, EachLineBecomesAUserOrIsKeptAsNotCreated) {
  ImportWorld world(GetParam());
  EXPECT_TRUE(world.import(
      "Jo,,Smith\r\n\r\nalone\twith a tab\r\nAnn,M.,Lee\nJo,,Smith\r\nKim,,Last line without an end"));
  EXPECT_THAT(world.rows, ElementsAre("1 GREEN Jo.Smith", "2  ", "3  alone\twith a tab", "4 GREEN Ann.Lee",
                                      "5  Jo.Smith", "6  Kim.Last line without an end"));
  EXPECT_EQ(world.errors(), std::string(kErrorHeading) + "\nalone\twith a tab\nJo,,Smith\n");
  const std::string tail = world.is_nt() ? ",," : ",";
  EXPECT_EQ(world.summary(), std::string(kSummaryHeading) + "Jo  Smith,Jo.Smith" + tail +
                                 "No\nAnn M. Lee,Ann.Lee" + tail + "No\n");
  EXPECT_THAT(world.log_tab(), testing::Contains("GREEN Number of Users Imported from starters.csv = 2"));
  EXPECT_FALSE(world.session.import.Importing);
  EXPECT_TRUE(world.session.form1.enabled);
}

TEST_P(ImportInEveryKindOfDomain, ARunThatLosesItsTemplateStops) {
  ImportWorld world(GetParam());
  const auto tell = world.session.import.row_done;
  world.session.import.row_done = [&](const session::ImportRow& row) {
    tell(row);
    std::filesystem::remove(world.folder.path() / "db/Template.dat");
  };
  EXPECT_FALSE(world.import("Jo,,Smith\nAnn,,Lee\nKim,,Ray\n"));
  EXPECT_THAT(world.rows, ElementsAre("1 GREEN Jo.Smith", testing::StartsWith("2 RED ")));
}

TEST_P(ImportInEveryKindOfDomain, ARepeatTakesTheSecondFormatWithItsSerialNumber) {
  ImportWorld world(GetParam(), {{"Setup", "AltSetupID", "%first%.%last%%n%"}, {"Setup", "IncNumber", "1"}});
  EXPECT_TRUE(world.import("Jo,,Smith\nJo,,Smith\nAnn,,Lee\n"));
  EXPECT_TRUE(world.import("Jo,,Smith\nAnn,,Lee\n"));
  EXPECT_THAT(world.rows, ElementsAre("1 GREEN Jo.Smith", "2 GREEN Jo.Smith1", "3 GREEN Ann.Lee",
                                      "1 GREEN Jo.Smith2", "2 GREEN Ann.Lee1"));
  EXPECT_EQ(world.errors(), kErrorHeading);
  EXPECT_THAT(world.summary(), Not(HasSubstr("Jo.Smith2")));
  EXPECT_THAT(world.database_file("Import Summary - 311226090500 (2).csv"), HasSubstr("Jo.Smith2"))
      << "within the same second";
}

TEST_P(ImportInEveryKindOfDomain, ARefusedUserLeavesNothingToTheNext) {
  ImportWorld world(GetParam(), {{"Setup", "AltSetupID", "%first%.%last%.%first%%n%"}});
  EXPECT_TRUE(world.import("Jonathan,,Smith\nAl,,Bo\nJonathan,,Smith\nAl,,Bo\n"));
  EXPECT_THAT(world.rows, ElementsAre("1 GREEN Jonathan.Smith", "2 GREEN Al.Bo",
                                      "3  Jonathan.Smith.Jonathan0", "4 GREEN Al.Bo.Al0"));
}

TEST_P(ImportInEveryKindOfDomain, GroupsAreTakenFromTheColumnsThatNameOne) {
  struct Case {
    std::string start;
    std::string finish;
    std::string light;
    bool joins;
  };
  for (const Case& one : {Case{"4", "9", "YELLOW", true}, Case{"0", "99", "GREEN", true},
                          Case{"4", "0", "GREEN", false}, Case{"6", "8", "GREEN", false}}) {
    ImportWorld world(
        GetParam(), {{"Setup", "ImportGroupsStart", one.start}, {"Setup", "ImportGroupsFinish", one.finish}});
    EXPECT_TRUE(world.import("Jo,,Smith, readers ,No Such Group,Domain Users,Staff,\n"));
    const std::string group = world.is_nt() ? "Readers" : "CN=Readers";
    EXPECT_EQ(testing::Value(world.groups_of("Jo.Smith"), testing::Contains(group)), one.joins) << one.finish;
    EXPECT_THAT(world.rows, ElementsAre("1 " + one.light + " Jo.Smith")) << one.finish;
    if (one.light == "YELLOW") {
      EXPECT_THAT(world.session.LastCreation.message, testing::EndsWith("ound: No Such Group"));
    }
  }
}

TEST_P(ImportInEveryKindOfDomain, TheExpiryTextIsADateOrATagThatTheLineFills) {
  struct Case {
    std::string text;
    std::string line;
    bool expires;
  };
  for (const Case& one :
       {Case{"31/12/2030", "Jo,,Smith", true}, Case{"%IMPORT4%", "Jo,,Smith,1/02/2031", true},
        Case{"%IMPORT4%", "Jo,,Smith", false}, Case{"", "Jo,,Smith", false},
        Case{"%IMPORT4%", "Jo,,Smith,31/02/2031", false}}) {
    ImportWorld world(GetParam(), {{"Setup", "AccountExpire", one.text}});
    EXPECT_TRUE(world.import(one.line));
    const char* const wrong = world.is_nt() ? "1 RED Jo.Smith" : "1 YELLOW Jo.Smith";
    const bool no_day = one.line.find("31/02") != base::npos;
    EXPECT_EQ(world.rows.front(), no_day ? wrong : "1 GREEN Jo.Smith");
    if (no_day) {
      EXPECT_THAT(world.session.LastCreation.message, AllOf(HasSubstr("Error setting account expiry: "),
                                                            HasSubstr("\"31/02/2031\" is neither a day")));
    }
    const auto read_expiry = [&] {
      world.services.directory.GetObject("WinNT://TWK/Jo.Smith")->Get("AccountExpirationDate");
    };
    EXPECT_EQ(test::number_of(read_expiry) == 0, one.expires) << one.text << " " << one.line;
  }
}

TEST(Import, ChosenColumnsFeedNamesAccountAndPassword) {
  ImportWorld world;
  load_csv_layout(world.session, world.file("x1,Smith,Jo,jsmith,Own-Pass-2026\n"));
  windows::CSV_Import& window = world.session.csv_import;
  EXPECT_EQ(window.columns.get(), 5);
  EXPECT_EQ(window.ImportFirst.text.get(), "%IMPORT1%");
  window.chkImport.value = 0;
  chkImport_Click(world.session);
  window.ImportFirst.select(3);
  window.ImportMiddle.select(0);
  window.ImportLast.select(2);
  window.ImportUserID.select(4);
  window.ImportPassword.select(5);
  csv_layout_ok(world.session);
  EXPECT_TRUE(world.session.form1.Formatted_Password.visible);
  EXPECT_TRUE(windows::Import_File(world.session, (world.folder.path() / "starters.csv").string()));
  EXPECT_THAT(world.rows, ElementsAre("1 GREEN jsmith"));
  EXPECT_EQ(world.property("jsmith", "displayName"), "Jo  Smith");
  EXPECT_NO_THROW(world.services.directory.OpenDSObject(world.path_of("jsmith"), "jsmith", "Own-Pass-2026"));
}

TEST_P(ImportInEveryKindOfDomain, AFieldThatALineDoesNotHaveIsEmpty) {
  ImportWorld world(GetParam(),
                    {{"Setup", "SetupID", "%first%%IMPORT4%"},
                     {"Setup", "ImportGroupsStart", "6"},
                     {"Setup", "ImportGroupsFinish", "6"},
                     {"Setup", "AccountExpire", "%IMPORT7%"},
                     {"Setup", "FormattedPassword", "%IMPORT5%"},
                     {"Preferences", "UseFormattedPassword", "YES"}},
                    with_property("p,department,%IMPORT9%"));
  world.session.form1.Description.text = std::string("dept %IMPORT8%");
  EXPECT_TRUE(world.import("Jo,,Smith,one,Own-Pass-2026,Readers,31/12/2030,Sales,Floor\nAnn,M\n"));
  EXPECT_THAT(world.rows, ElementsAre("1 GREEN Joone", "2 YELLOW Ann"));
  EXPECT_THAT(world.session.LastCreation.message,
              HasSubstr("The account has no password: %IMPORT5% is empty"));
  EXPECT_EQ(world.property("Ann", "FullName"), "Ann M");
  EXPECT_EQ(world.property("Ann", "Description"), "");
  EXPECT_EQ(directory::expiry_of(platform::User(world.account("Ann"))), std::nullopt);
  EXPECT_THAT(world.groups_of("Ann"), Not(testing::Contains(HasSubstr("Readers"))));
  if (!world.is_nt()) {
    EXPECT_EQ(world.property("Ann", "sn") + world.property("Ann", "department"), "");
    EXPECT_THROW(world.services.directory.OpenDSObject(world.path_of("Ann"), "Ann", "Own-Pass-2026"),
                 base::RuntimeError);
  }
  world.session.form1.setupid.text = std::string("%IMPORT4%");
  EXPECT_TRUE(world.import("Kim,,Day,kim\nAda,M\n"));
  EXPECT_EQ(world.rows.back(), "2  ");
}

TEST_P(ImportInEveryKindOfDomain, TheFileOfRefusedLinesCanBeImportedAgain) {
  ImportWorld world(GetParam());
  EXPECT_TRUE(world.import("Jo,,Smith\nalone\nJo,,Smith\nAnn,,Lee\nAnn,,Lee\n"));
  const std::string refused = world.errors();
  EXPECT_EQ(refused, std::string(kErrorHeading) + "alone\nJo,,Smith\nAnn,,Lee\n");
  world.rows.clear();
  EXPECT_TRUE(world.import_errors());
  EXPECT_THAT(world.rows, ElementsAre("5  alone", "6  Jo.Smith", "7  Ann.Lee"));
  EXPECT_EQ(world.errors(), refused);
  world.session.import.row_done = [&world](const session::ImportRow&) {
    windows::CancelButton_Click(world.session);
  };
  EXPECT_TRUE(world.import_errors());
  EXPECT_EQ(world.errors(), refused) << "lines that a stopped run does not come to stay";
  EXPECT_EQ(world.database_file("Import.err.old"), refused);
  load_csv_layout(world.session, world.session.dbpath + "Import.err");
  EXPECT_EQ(world.session.csv_import.ImportLast.items().size(), 4U);
}

TEST(Import, AGroupThatOnlyTheTemplateStillNamesIsReportedForEachUser) {
  ImportWorld world(DomainKind::kNative, {}, [](LabSession& lab) {
    lab.staff.GroupCount = 2;
    lab.staff.Groups[1] = "Dissolved";
  });
  EXPECT_TRUE(world.import("Jo,,Smith\nAnn,,Lee\n"));
  EXPECT_THAT(world.rows, ElementsAre("1 YELLOW Jo.Smith", "2 YELLOW Ann.Lee"));
}

TEST(Import, ALineIsReadWhateverItHolds) {
  std::string many_fields = "Jo,,Smith";
  for (int i = 0; i < 40000; ++i)
    many_fields += ",x";
  const std::pair<std::string, const char*> cases[] = {
      {"Drei,", "1  Drei."},
      {",,Lee", "1 YELLOW .Lee"},
      {"Jo,,Lee", "1 GREEN Jo.Lee"},
      {many_fields, "1 GREEN Jo.Smith"},
      {"Ren\xC3\xA9,,Noir\n", "1 GREEN René.Noir"},
      {"\xEF\xBB\xBFRen\xC3\xA9,,Noir\n", "1 GREEN René.Noir"},
      {"Ren\xE9,,Noir\n", "1 GREEN René.Noir"}};
  for (const auto& [bytes, row] : cases) {
    ImportWorld world;
    EXPECT_TRUE(world.import(bytes));
    EXPECT_THAT(world.rows, ElementsAre(row));
  }
}

TEST(Import, AHaltOnErrorsStopsAtTheFirstRedUser) {
  for (const bool halt : {true, false}) {
    ImportWorld world(DomainKind::kNative, {{"Preferences", "StopOnError", halt ? "Yes" : "No"}});
    world.directory.writes_at_once = true;
    int users = 0;
    world.directory.before = [&users](std::string_view operation, std::string_view) {
      if (operation == "Create" && ++users == 2)
        throw base::RuntimeError(platform::ads_error::kAccessDenied, "no");
    };
    world.dialogs.expect("error: ");
    EXPECT_EQ(world.import("Jo,,Smith\nAnn,,Lee\nKim,,Day\n"), !halt);
    EXPECT_EQ(world.rows.size(), halt ? 2U : 3U);
    if (!halt)
      continue;
    EXPECT_EQ(world.log_tab().back(), "RED  Import Halted because errors were detected");
    EXPECT_EQ(world.errors(), std::string(kErrorHeading) + "Import Halted because error were detected\n");
  }
}

TEST(Import, AHaltOnWarningsReadsAsAHaltOnErrors) {
  ImportWorld world(DomainKind::kNative, {{"Preferences", "StopOnWarning", "Yes"},
                                          {"Preferences", "StopOnError", "Yes"},
                                          {"Setup", "Password", "short"}});
  EXPECT_FALSE(world.import("Jo,,Smith\nAnn,,Lee\n"));
  EXPECT_THAT(world.rows, ElementsAre("1 YELLOW Jo.Smith"));
  EXPECT_EQ(world.log_tab().back(), "RED  Import Halted because errors were detected");
  EXPECT_THAT(world.summary(), HasSubstr("Jo  Smith,Jo.Smith,Yes\n"));
}

TEST(Import, StopIsHeededBeforeTheNextLine) {
  ImportWorld world;
  world.session.import.row_done = [&world](const session::ImportRow&) {
    windows::CancelButton_Click(world.session);
  };
  EXPECT_TRUE(world.import("Jo,,Smith\nAnn,,Lee\n"));
  EXPECT_EQ(world.path_of("Ann.Lee"), "");
  EXPECT_EQ(world.log_tab().back(), "GREEN  Import Halted by User");
}

TEST(Import, PromptRowsAskUnlessTheyAreSkipped) {
  for (const bool skip : {true, false}) {
    ImportWorld world(DomainKind::kNative, {{"Preferences", "SkipPrompt", skip ? "Yes" : "No"}},
                      with_property("p,department,Prompt"));
    if (!skip)
      world.dialogs.expect_input("Enter Value for department", "Sales");
    EXPECT_TRUE(world.import("Jo,,Smith\n"));
    EXPECT_EQ(world.property("Jo.Smith", "department"), skip ? "" : "Sales");
  }
}

TEST(Import, ANameThatIsNotFreeInTheForestLeavesItsColumnEmpty) {
  ImportWorld world(DomainKind::kNative, {}, with_property("p,userPrincipalName,%last%@%Domain%"));
  EXPECT_TRUE(world.import("Jo,,Smith\nAnn,,Smith\n"));
  EXPECT_EQ(world.summary(), std::string(kSummaryHeading) + "Jo  Smith,Jo.Smith,Smith@twk.test,No\n" +
                                 "Ann  Smith,Ann.Smith,,Yes\n");
}

TEST(Import, AFileThatCannotBeReadOrWrittenEndsTheRunWithItsReason) {
  ImportWorld world;
  EXPECT_FALSE(windows::Import_File(world.session, "/nowhere/starters.csv"));
  EXPECT_THAT(world.session.import.failure, HasSubstr("starters.csv"));
  EXPECT_FALSE(world.session.import.Importing);
  EXPECT_TRUE(world.session.form1.enabled);
  EXPECT_FALSE(world.session.cancel_import.visible);
  world.session.dbpath = std::string("/proc/");
  EXPECT_FALSE(world.import("Jo,,Smith\n"));
  EXPECT_THAT(world.session.import.failure, HasSubstr("Import.err"));
}

TEST(ImportCommand, RunsFromTheFileToTheClosingText) {
  ImportWorld world;
  const std::string path = world.file("Jo,,Smith\n");
  world.dialogs.expect_input("Open file to import", path);
  world.dialogs.expect("1 users would be created, 0 of them with warnings, 0 not.");
  int shown = 0;
  world.dialogs.on_modal = [&](std::string_view) {
    if (++shown == 1)
      return static_cast<void>(windows::csv_layout_rehearse(world.session));
    EXPECT_THAT(world.log(), Not(HasSubstr("Jo.Smith")));
    EXPECT_THAT(world.log_tab(), IsSupersetOf({"GREEN Line 1: Jo.Smith would be created",
                                               " Make the folder \\\\FS1\\D$\\Users\\Jo.Smith"}));
    csv_layout_ok(world.session);
  };
  windows::Import_Command(world.session);
  EXPECT_EQ(shown, 2);
  EXPECT_EQ(world.session.form1.StatusBar1.panel1.get(),
            "Import Complete. 1 users Added. Check Import.err for errors.");
  EXPECT_THAT(world.log(), HasSubstr("User:admin\nStarting Import from: " + path + "\n"));
  EXPECT_THAT(world.log(), HasSubstr("31/12/2026 09:05:00\nImport Finished\n"));
}

TEST(ImportCommand, AnUnsuitableSelectionIsReportedInABox) {
  struct Case {
    DomainKind kind;
    bool site;
    bool copy;
    std::string text;
    std::string expiry = {};
  };
  const std::vector<Case> cases = {
      {DomainKind::kNt, false, false, "To Import Users you must select a Template and a Site."},
      {DomainKind::kNative, false, false, "Template and a Site\r\nand select an OU from the treeview."},
      {DomainKind::kNative, true, true,
       "and select an User from the treeview.\r\nor turn off 'copy user' function"},
      {DomainKind::kNative, true, false, "The expiry of the accounts: \"soon\" is neither", "soon"},
  };
  for (const Case& one : cases) {
    ImportWorld world(one.kind);
    if (!one.site)
      world.session.form1.NUsitename.text = std::string();
    world.session.form1.Copy_User.value = one.copy ? 1 : 0;
    world.session.import_grps.Expiredate.text = one.expiry;
    world.dialogs.expect(one.text);
    windows::Import_Command(world.session);
    EXPECT_EQ(world.dialogs.last_title, "Can't Import Users");
  }
}

TEST(CsvLayout, OffersNoColumnThatALineCannotKeep) {
  ImportWorld world;
  std::string line = "1";
  for (int i = 2; i <= 130; ++i)
    line += "," + base::to_text(i);
  load_csv_layout(world.session, world.file(line + "\n"));
  EXPECT_EQ(world.session.csv_import.columns.get(), 130);
  const auto& offered = world.session.csv_import.ImportLast.items();
  EXPECT_EQ(offered.size(), session::kMostImportFields + 1);
  EXPECT_EQ(offered.back(), "%IMPORT100%");
}

TEST(CsvLayout, ShowsTheEndOfALongPathAndAPreviewOfTwoLines) {
  ImportWorld world;
  load_csv_layout(world.session, world.file("a,b\nc,d,e\nf\n"));
  windows::CSV_Import& window = world.session.csv_import;
  EXPECT_EQ(window.ListView1.size(), 2U);
  EXPECT_EQ(window.columns.get(), 3);
  EXPECT_THAT(window.ImportFirst.items(), ElementsAre("", "%IMPORT1%", "%IMPORT2%"));
  EXPECT_LE(base::length(window.File_Name.caption.get()), 40U);
  load_csv_layout(world.session, world.file(""));
  EXPECT_THAT(window.ImportFirst.items(), ElementsAre(""));
}

TEST(CsvLines, EndWithEitherLineEndOrTheFile) {
  const std::string text = "a\r\nb\nc\r\rd";
  std::vector<std::string> lines;
  std::size_t position = 0;
  std::string_view line;
  while (next_line(text, position, line))
    lines.emplace_back(line);
  EXPECT_THAT(lines, ElementsAre("a", "b", "c", "", "d"));
}

}  // namespace
}  // namespace twk::batch
