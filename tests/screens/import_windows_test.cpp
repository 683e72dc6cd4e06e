#include "windows/state/import_windows.hpp"
#include "screens/screen_test.hpp"
#include "session/log_tab.hpp"
#include "windows/import_options.hpp"
#include "windows/state/form1.hpp"

namespace twk::test {
namespace {

using testing::Contains;
using testing::HasSubstr;
using testing::IsEmpty;

constexpr int kLines = 20;

class ImportWindowsTest : public ScreenTest {
 protected:
  /// Opens the layout of a file: first name, last name, then a column that no name is in.
  void import_starters(std::function<void(QWidget& layout)> person) {
    std::string lines;
    for (int line = 1; line <= kLines; ++line)
      lines += "First" + std::to_string(line) + ",Last" + std::to_string(line) + ",Floor\r\n";
    put_file(lab.folder / "starters.csv", lines);
    expect_file(lab.folder / "starters.csv");
    expect_window(std::move(person));
    find<QAction>("mnuFile1")->trigger();
    settle();
  }
  /// Takes the columns as they are, with the keyboard.
  void take_layout(QWidget& layout) {
    press("chkImport", Qt::Key_Space, &layout);
    choose("ImportMiddle", "", &layout);
    choose("ImportLast", "%IMPORT2%", &layout);
    press("Command1", Qt::Key_Return, &layout);
  }
  void open_log() {
    open();
    window->tabs().setCurrentIndex(windows::tab::kLog);
    lab.session.log.begin_block();
    lab.session.log.close();
  }
  bool log_file_is_there() { return lab.session.platform.files.exists(lab.session.dbpath + "Log.txt"); }
};

TEST_F(ImportWindowsTest, AFileIsImportedByColumnsChosenWithTheKeyboard) {
  open();
  window->tabs().setCurrentIndex(windows::tab::kLog);
  import_starters([this](QWidget& layout) {
    EXPECT_EQ(layout.windowTitle(), "CSV File Import");
    const QAbstractItemModel* const model = pane("ListView1", &layout).model();
    EXPECT_EQ(model->headerData(2, Qt::Horizontal).toString(), "3");
    EXPECT_EQ(model->index(1, 1).data().toString(), "Last2");
    EXPECT_FALSE(find<QComboBox>("ImportMiddle", &layout)->isEnabled());
    take_layout(layout);
  });
  EXPECT_EQ(status(), "Import Complete. 20 users Added. Check Import.err for errors.");
  EXPECT_THAT(shown_in("ListView1"), Contains("Number of Users Imported from starters.csv = 20"));
  EXPECT_EQ(lab.property("First7.Last7", "sn"), "Last7");
  EXPECT_FALSE(find<QDialog>("CancelImport")->isVisible());
  // What the log tab no longer knows, the record of the import does.
  click("Clear_log");
  lab.process.result = {.number = 0, .failure = "xdg-open is not installed"};
  expect_window([this](QWidget& shown) {
    choose("blocks_shown", "GREEN", &shown);
    EXPECT_EQ(shown_in("blocks", &shown).size(), 20U);
    EXPECT_THAT(find<QLabel>("block_light", &shown)->text().toStdString(),
                testing::StartsWith("GREEN, told by Import Record - "));
    QTest::keyClick(&shown, Qt::Key_Escape);
  });
  click("Log_Detail");
}

TEST_F(ImportWindowsTest, ASpreadsheetIsShownUnderItsHeadingsWithItsAccountNames) {
  open();
  put_file(lab.folder / "sheet.csv",
           "Given name;Surname;Logon;Room\r\n\"Al\";\"Bo; Jr\";al;1\r\nEva;May;eva;2\r\n");
  expect_file(lab.folder / "sheet.csv");
  expect_window([this](QWidget& layout) {
    const auto heading = [&](int column) {
      return screens::from_qt(
          pane("ListView1", &layout).model()->headerData(column, Qt::Horizontal).toString());
    };
    EXPECT_THAT(find<QLabel>("Hint", &layout)->text().toStdString(), HasSubstr("tick the box above"));
    press("chkCsv", Qt::Key_Space, &layout);
    EXPECT_EQ(heading(0) + "/" + heading(2), "Account Name/Surname\n→ Last Name");
    EXPECT_THAT(shown_in("ListView1", &layout), testing::ElementsAre("Al.Bo; Jr", "Eva.May"));
    choose("ImportUserID", "Logon", &layout);
    EXPECT_EQ(heading(3), "Logon\n→ UserID");
    EXPECT_THAT(shown_in("ListView1", &layout), testing::ElementsAre("al", "eva"));
    lab.session.form1.Description.text = std::string("%IMPORT:Floor%");
    expect_box("the description: no column has the heading \"Floor\"");
    click("Command1", &layout);
    lab.session.form1.Description.text = std::string("%IMPORT:Room%");
    click("Command1", &layout);
  });
  find<QAction>("mnuFile1")->trigger();
  settle();
  EXPECT_EQ(lab.property("al", "sn") + lab.property("eva", "description"), "Bo; Jr2");
  put_file(lab.folder / "sheet.csv", "a,b\r\n\"c");
  expect_file(lab.folder / "sheet.csv");
  expect_window([this](QWidget& layout) {
    expect_box("line 2, column 1: the quote that begins here is never closed");
    press("chkCsv", Qt::Key_Space, &layout);
    EXPECT_FALSE(find<QCheckBox>("chkCsv", &layout)->isChecked());
    EXPECT_EQ(pane("ListView1", &layout).model()->columnCount(), 2);
    click("Command2", &layout);
  });
  find<QAction>("mnuFile1")->trigger();
  settle();
}

TEST_F(ImportWindowsTest, CancelEscAndRehearseInTheLayoutTakeNothingIn) {
  open();
  import_starters([this](QWidget& layout) { click("Command2", &layout); });
  import_starters([](QWidget& layout) { QTest::keyClick(&layout, Qt::Key_Escape); });
  EXPECT_EQ(status(), "Ready.");
  EXPECT_THAT(shown_in("ListView1"), IsEmpty());
  import_starters([this](QWidget& layout) {
    expect_box("20 users would be created");
    expect_window([this](QWidget& again) { click("Command2", &again); });
    click("Rehearse", &layout);
  });
  EXPECT_THAT(shown_in("ListView1"), Contains("Line 20: First20.Floor would be created"));
  EXPECT_EQ(lab.path_of("First20.Floor"), "");
  // Names that clash in a container which nobody has opened.
  controls::TreeView& tree = lab.session.form1.TreeView1;
  tree.select(tree.find("CN=Users,DC=twk,DC=test"));
  lab.session.form1.ALTID.text = std::string("%first%.%last%%n%");
  put_file(lab.folder / "twins.csv", "Eva,,May\r\nEva,,May\r\n");
  expect_file(lab.folder / "twins.csv");
  expect_window([this](QWidget& layout) {
    expect_box("2 users would be created");
    expect_window([this](QWidget& again) { click("Command2", &again); });
    click("Rehearse", &layout);
  });
  find<QAction>("mnuFile1")->trigger();
  settle();
}

/// How a person stops a run.
class StopOfAnImport : public ImportWindowsTest, public testing::WithParamInterface<const char*> {};
INSTANTIATE_TEST_SUITE_P(Ways, StopOfAnImport, testing::Values("Button", "Esc", "Cross"),
                         [](const auto& way) { return std::string(way.param); });

TEST_P(StopOfAnImport, EndsItBeforeTheNextLine) {
  open();
  auto* const stop = find<QDialog>("CancelImport");
  const std::map<std::string, std::function<void()>> ways = {
      {"Button", [&] { click("CancelButton", stop); }},
      {"Esc", [&] { QTest::keyClick(stop, Qt::Key_Escape); }},
      {"Cross", [&] { stop->close(); }}};
  QTimer person;
  std::string counted;
  QObject::connect(&person, &QTimer::timeout, [&] {
    const QString text = find<QLabel>("Import_Text", stop)->text();
    if (!stop->isVisible() || text.isEmpty() || !counted.empty())
      return;
    counted = screens::from_qt(text);
    ways.at(GetParam())();
  });
  person.start(0);
  import_starters([this](QWidget& layout) { take_layout(layout); });
  const int added = lab.session.import.ImportAddedCount;
  EXPECT_EQ(counted, "Number of Users Imported from starters.csv= " + std::to_string(added));
  EXPECT_GT(added, 0);
  EXPECT_LT(added, kLines);
  EXPECT_FALSE(stop->isVisible());
  EXPECT_TRUE(window->centralWidget()->isEnabled());
}

TEST_F(ImportWindowsTest, ARangeThatRunsBackwardsIsReportedAndTheWindowStays) {
  open();
  windows::ImportGrps_Load(lab.session);
  expect_window([this](QWidget& shown) {
    EXPECT_FALSE(find<QLineEdit>("LowerRange", &shown)->isEnabled());
    click("Grp_Range_2", &shown);
    const auto overwrite = [&](const char* name, const char* number) {
      auto* const field = find<QLineEdit>(name, &shown);
      field->selectAll();
      QTest::keyClicks(field, number);
    };
    overwrite("LowerRange", "7");
    overwrite("UpperRange", "5");
    expect_box("Start value cannot be greater then Finish value");
    click("OK", &shown);
    EXPECT_TRUE(shown.isVisible());
    overwrite("UpperRange", "9");
    type("Expiredate", "31/12/2027", &shown);
    click("OK", &shown);
  });
  lab.session.platform.dialogs.show_modal("ImportGrps");
  const windows::ImportGrps& stored = lab.session.import_grps;
  EXPECT_EQ(stored.LowerRange.text.get() + stored.UpperRange.text.get() + stored.Expiredate.text.get(),
            "7931/12/2027");
}

TEST_F(ImportWindowsTest, TheLogTabKeepsTheNewestRowInViewAndClears) {
  open_log();
  for (int row = 0; row < 200; ++row)
    session::LOG_TAB(lab.session, session::kGreen, "Row " + std::to_string(row));
  settle();
  const screens::ListPane& list = pane("ListView1");
  EXPECT_TRUE(list.viewport()->rect().contains(list.visualRect(list.model()->index(199, 0))));
  click("Clear_log");
  EXPECT_EQ(list.model()->rowCount(), 0);
}

TEST_F(ImportWindowsTest, TheLogFileIsShownAndDeletedOnlyOnYes) {
  open_log();
  click("Log_Detail");
  EXPECT_THAT(lab.process.commands, Contains(Contains(HasSubstr("Log.txt"))));
  for (const auto answer : {QMessageBox::No, QMessageBox::Yes}) {
    expect_box("Sure to delete the log file", answer);
    click("Delete_Log_File");
    EXPECT_EQ(log_file_is_there(), answer == QMessageBox::No);
  }
}

TEST_F(ImportWindowsTest, WithoutAViewerTheLogHasAWindowAndARowOpensWhatItIsAbout) {
  open_log();
  const auto log_user = [this](const std::string& user) {
    lab.session.log.begin_block();
    lab.session.log.line("Creating User:" + user);
    if (user == "jo")
      lab.session.log.line("Error Creating Home: no room");
    lab.session.log.close();
    session::LOG_TAB(lab.session, user == "jo" ? session::kYellow : session::kGreen, user + " Created User");
  };
  log_user("jo");
  log_user("ann");
  const auto shown_text = [this](QWidget& shown) {
    return find<QPlainTextEdit>("block_text", &shown)->toPlainText().toStdString();
  };
  expect_window([&](QWidget& shown) {
    EXPECT_EQ(shown.objectName(), "LogWindow");
    EXPECT_THAT(shown_text(shown), HasSubstr("Creating User:jo"));
    type("blocks_filter", "user:ANN", &shown);
    EXPECT_THAT(shown_in("blocks", &shown), testing::ElementsAre("Creating User:ann"));
    click_row("blocks", "Creating User:ann", &shown);
    EXPECT_THAT(shown_text(shown), HasSubstr("Creating User:ann"));
    QTest::keyClick(&shown, Qt::Key_Escape);
  });
  double_click_row("ListView1", "jo Created User");
  lab.process.result = {.number = 0, .failure = "xdg-open is not installed"};
  expect_window([&](QWidget& shown) {
    EXPECT_THAT(shown_text(shown), HasSubstr("Creating User:ann")) << "the newest one";
    for (const char* const choice : {"With lines of errors", "YELLOW"}) {
      choose("blocks_shown", choice, &shown);
      EXPECT_THAT(shown_in("blocks", &shown), testing::ElementsAre("Creating User:jo")) << choice;
      EXPECT_THAT(shown_text(shown), HasSubstr("no room"));
    }
    EXPECT_EQ(find<QLabel>("block_light", &shown)->text(), "YELLOW, told by the log tab.");
    choose("blocks_shown", "No light", &shown);
    EXPECT_THAT(shown_in("blocks", &shown), Contains("(nothing was written)"));
    QTest::keyClick(&shown, Qt::Key_Escape);
  });
  const std::string before = status();
  click("Log_Detail");
  EXPECT_EQ(status(), before) << "it was shown after all";
}

TEST_F(ImportWindowsTest, PeopleWhoHaveAnAccountArePassedOverAndNamesKeptAsTheyAre) {
  const platform::ObjectPtr known = lab.make_user("known", "known");
  known->Put("employeeNumber", "17");
  known->SetInfo();
  open();
  put_file(lab.folder / "people.csv", "Jos\u00e9,van Dyk,17\r\nMax,von Au,18\r\n");
  expect_file(lab.folder / "people.csv");
  expect_window([this](QWidget& layout) {
    press("chkImport", Qt::Key_Space, &layout);
    choose("ImportMiddle", "", &layout);
    choose("ImportLast", "%IMPORT2%", &layout);
    click("chkKeepNames", &layout);
    type("KeyAttribute", "employee number", &layout);
    expect_box("\"employee number\" is no attribute");
    click("Command1", &layout);
    type("KeyAttribute", "employeeNumber", &layout);
    expect_box("Choose the column that holds employeeNumber");
    click("Command1", &layout);
    choose("KeyColumn", "%IMPORT3%", &layout);
    click("Command1", &layout);
  });
  find<QAction>("mnuFile1")->trigger();
  settle();
  EXPECT_EQ(status(), "Import Complete. 1 users Added. Check Import.err for errors.");
  EXPECT_EQ(lab.property("Max.von Au", "sn"), "von Au");
  EXPECT_EQ(lab.property("Max.von Au", "employeeNumber"), "18");
}

}  // namespace
}  // namespace twk::test
