#include <fstream>

#include "batch/import_options.hpp"
#include "screens/screen_test.hpp"
#include "session/form1.hpp"
#include "session/log_tab.hpp"
#include "session/windows.hpp"

namespace twk::test {
namespace {

using testing::Contains;
using testing::HasSubstr;
using testing::Not;

constexpr int kLines = 20;

class ImportWindowsTest : public ScreenTest {
 protected:
  /// First name, last name, then a column that no name is in.
  std::string write_starters() {
    const std::string path = (lab.folder.path() / "starters.csv").string();
    std::ofstream file(path, std::ios::binary);
    for (int line = 1; line <= kLines; ++line)
      file << "First" << line << ",Last" << line << ",Floor " << line << "\r\n";
    return path;
  }
  void import_users() {
    find<QAction>("mnuFile1")->trigger();
    settle();
  }
  void expect_file(const std::string& path) {
    expect_window([this, path](QWidget& shown) {
      EXPECT_EQ(shown.windowTitle(), "Open file to import");
      auto* const field = find<QLineEdit>("fileNameEdit", &shown);
      field->setText(screens::to_qt(path));
      QTest::mouseClick(find<QDialogButtonBox>("buttonBox", &shown)->button(QDialogButtonBox::Open),
                        Qt::LeftButton);
    });
  }
  /// Takes the columns as `write_starters` wrote them.
  void expect_layout() {
    expect_window([this](QWidget& shown) {
      QTest::keyClick(find<QCheckBox>("chkImport", &shown), Qt::Key_Space);
      choose("ImportMiddle", "", &shown);
      choose("ImportLast", "%IMPORT2%", &shown);
      QTest::keyClick(find<QPushButton>("Command1", &shown), Qt::Key_Return);
    });
  }
  /// The messages of the log tab as shown.
  QStringList log_rows() {
    QStringList rows;
    const QAbstractItemModel* const model = find<QTreeView>("ListView1")->model();
    for (int row = 0; row < model->rowCount(); ++row)
      rows << model->index(row, 0).data().toString();
    return rows;
  }
  [[nodiscard]] std::string log_path() { return lab.session.dbpath + "Log.txt"; }
};

TEST_F(ImportWindowsTest, AFileIsImportedByColumnsChosenWithTheKeyboard) {
  open();
  expect_file(write_starters());
  expect_layout();
  import_users();
  EXPECT_EQ(status(), "Import Complete. 20 users Added. Check Import.err for errors.");
  EXPECT_TRUE(log_rows().contains("Number of Users Imported from starters.csv = 20"));
  EXPECT_EQ(lab.property("First7.Last7", "sn"), "Last7");
  EXPECT_EQ(lab.property("First7.Last7", "initials"), "");
  EXPECT_FALSE(find<QDialog>("CancelImport")->isVisible());
}

TEST_F(ImportWindowsTest, ThePreviewShowsEachColumnUnderItsNumberAndTheStandardLayoutIsLocked) {
  open();
  expect_file(write_starters());
  expect_window([this](QWidget& shown) {
    EXPECT_EQ(shown.windowTitle(), "CSV File Import");
    const QAbstractItemModel* const model = find<QTreeView>("ListView1", &shown)->model();
    ASSERT_EQ(model->columnCount(), 3);
    EXPECT_EQ(model->headerData(2, Qt::Horizontal).toString(), "3");
    EXPECT_EQ(model->index(0, 0).data().toString(), "First1");
    EXPECT_EQ(model->index(1, 2).data().toString(), "Floor 2");
    EXPECT_EQ(find<QComboBox>("ImportMiddle", &shown)->currentText(), "%IMPORT2%");
    EXPECT_FALSE(find<QComboBox>("ImportMiddle", &shown)->isEnabled());
    QTest::keyClick(&shown, Qt::Key_Escape);
  });
  import_users();
  EXPECT_FALSE(lab.session.import.ImportAccepted);
}

TEST_F(ImportWindowsTest, CancelInTheLayoutTakesNothingIn) {
  open();
  expect_file(write_starters());
  expect_window([this](QWidget& shown) { click("Command2", &shown); });
  import_users();
  EXPECT_EQ(status(), "Ready.");
  EXPECT_TRUE(log_rows().isEmpty());
  EXPECT_THAT(lab.log(), Not(HasSubstr("Starting Import")));
}

/// How a person stops a run.
class StopOfAnImport : public ImportWindowsTest,
                       public testing::WithParamInterface<std::function<void(QDialog&)>> {};
INSTANTIATE_TEST_SUITE_P(Ways, StopOfAnImport,
                         testing::Values(
                             [](QDialog& shown) {
                               QTest::mouseClick(shown.findChild<QPushButton*>("CancelButton"),
                                                 Qt::LeftButton);
                             },
                             [](QDialog& shown) { QTest::keyClick(&shown, Qt::Key_Escape); },
                             [](QDialog& shown) { shown.close(); }));

TEST_P(StopOfAnImport, EndsItBeforeTheNextLine) {
  open();
  expect_file(write_starters());
  expect_layout();
  auto* const stop = find<QDialog>("CancelImport");
  QTimer person;
  std::string counted;
  QObject::connect(&person, &QTimer::timeout, [&] {
    const QString text = find<QLabel>("Import_Text", stop)->text();
    if (!stop->isVisible() || text.isEmpty() || !counted.empty())
      return;
    counted = screens::from_qt(text);
    GetParam()(*stop);
  });
  person.start(0);
  import_users();
  EXPECT_EQ(counted, "Number of Users Imported from starters.csv= " +
                         std::to_string(lab.session.import.ImportAddedCount));
  EXPECT_GT(lab.session.import.ImportAddedCount, 0);
  EXPECT_LT(lab.session.import.ImportAddedCount, kLines);
  EXPECT_TRUE(log_rows().contains(" Import Halted by User"));
  EXPECT_FALSE(stop->isVisible());
  EXPECT_TRUE(window->centralWidget()->isEnabled());
}

TEST_F(ImportWindowsTest, ARangeThatRunsBackwardsIsReportedAndTheWindowStays) {
  open();
  batch::ImportGrps_Load(lab.session);
  expect_window([this](QWidget& shown) {
    EXPECT_FALSE(find<QLineEdit>("LowerRange", &shown)->isEnabled());
    // The middle of the widget is beside its caption.
    auto* const range = find<QRadioButton>("Grp_Range_2", &shown);
    QTest::mouseClick(range, Qt::LeftButton, {}, QPoint(8, range->height() / 2));
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
    EXPECT_FALSE(shown.isVisible());
  });
  lab.session.platform.dialogs.show_modal("ImportGrps");
  batch::ImportGrps_Load(lab.session);
  EXPECT_EQ(lab.session.import_grps.LowerRange.text.get(), "7");
  EXPECT_EQ(lab.session.import_grps.UpperRange.text.get(), "9");
  EXPECT_EQ(lab.session.import_grps.Expiredate.text.get(), "31/12/2027");
}

TEST_F(ImportWindowsTest, TheLogTabKeepsTheNewestRowInViewAndClears) {
  open();
  window->tabs().setCurrentIndex(session::tab::kLog);
  for (int row = 0; row < 200; ++row)
    session::LOG_TAB(lab.session, session::kGreen, "Row " + std::to_string(row));
  settle();
  auto* const list = find<QTreeView>("ListView1");
  const QRect newest = list->visualRect(list->model()->index(199, 0));
  EXPECT_TRUE(list->viewport()->rect().contains(newest));
  lab.session.log.begin_block();
  lab.session.log.close();
  click("Clear_log");
  EXPECT_EQ(list->model()->rowCount(), 0);
  EXPECT_TRUE(lab.session.platform.files.exists(log_path()));
}

TEST_F(ImportWindowsTest, TheLogFileIsShownAndDeletedOnlyOnYes) {
  open();
  window->tabs().setCurrentIndex(session::tab::kLog);
  lab.session.log.begin_block();
  lab.session.log.close();
  click("Log_Detail");
  EXPECT_THAT(lab.process.commands, Contains(Contains(HasSubstr("Log.txt"))));
  expect_box("Sure to delete the log file", QMessageBox::No);
  click("Delete_Log_File");
  EXPECT_TRUE(lab.session.platform.files.exists(log_path()));
  expect_box("Sure to delete the log file", QMessageBox::Yes);
  click("Delete_Log_File");
  EXPECT_FALSE(lab.session.platform.files.exists(log_path()));
}

}  // namespace
}  // namespace twk::test
