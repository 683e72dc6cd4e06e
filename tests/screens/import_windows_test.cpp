#include "base/text.hpp"
#include "screens/screen_test.hpp"
#include "session/main_window.hpp"

namespace twk::test {
namespace {

class ImportWindowsTest : public ScreenTest {
 protected:
  /// A file of users with their last names in front.
  std::string make_file(int lines) {
    std::string text;
    for (int i = 0; i < lines; ++i)
      text += "Baker" + base::to_text(i) + ",ignored,Ann\r\n";
    put_file(lab.folder / "users.csv", text);
    return lab.folder / "users.csv";
  }
  /// The box that asks for the file gets the path typed.
  void expect_file_box(const std::string& path) {
    expect_window([path](QWidget& box) {
      auto* const name = box.findChild<QLineEdit*>("fileNameEdit");
      ASSERT_NE(name, nullptr) << box.windowTitle().toStdString();
      name->setText(QString::fromStdString(path));
      QTest::keyClick(name, Qt::Key_Return);
    });
  }
  void start_import() { find<QAction>("mnuFile1")->trigger(); }
  [[nodiscard]] const session::ImportState& run() const { return lab.session.import; }
};

TEST_F(ImportWindowsTest, TakesUsersByTheColumnsThatWereChosenWithTheKeyboard) {
  open();
  expect_file_box(make_file(3));
  expect_window([this](QWidget& layout) {
    EXPECT_EQ(find<QTreeView>("ListView1", &layout)->model()->columnCount(), 3);
    EXPECT_FALSE(find<QComboBox>("ImportFirst", &layout)->isEnabled());
    QTest::keyClick(find<QCheckBox>("chkImport", &layout), Qt::Key_Space);
    choose("ImportFirst", "%IMPORT3%", &layout);
    choose("ImportMiddle", "", &layout);
    choose("ImportLast", "%IMPORT1%", &layout);
    click("Command1", &layout);
  });
  start_import();
  EXPECT_EQ(run().ImportAddedCount, 3);
  EXPECT_EQ(status(), "Import Complete. 3 users Added. Check Import.err for errors.");
  EXPECT_EQ(lab.property("Ann.Baker2", "givenName"), "Ann");
  EXPECT_EQ(lab.property("Ann.Baker2", "sn"), "Baker2");
  EXPECT_TRUE(lab.session.form1.enabled.get());
  EXPECT_FALSE(lab.session.cancel_import.visible.get());
}

TEST_F(ImportWindowsTest, StopsBeforeTheNextUserWhenStopIsPressedWhileItRuns) {
  open();
  expect_file_box(make_file(60));
  expect_window([this](QWidget& layout) {
    click("chkImport", &layout);
    choose("ImportFirst", "%IMPORT3%", &layout);
    choose("ImportLast", "%IMPORT1%", &layout);
    click("Command1", &layout);
  });
  QTimer presses;
  QObject::connect(&presses, &QTimer::timeout, [this] {
    auto* const stop = window->findChild<QPushButton*>("CancelButton");
    if (stop == nullptr || !stop->isVisible() || run().ImportAddedCount < 5)
      return;
    EXPECT_FALSE(window->tree().isEnabled()) << "only Stop takes input";
    QTest::mouseClick(stop, Qt::LeftButton);
  });
  presses.start(0);
  start_import();
  EXPECT_GE(run().ImportAddedCount, 5);
  EXPECT_LT(run().ImportAddedCount, 60);
  EXPECT_EQ(lab.log_tab().back(), "GREEN  Import Halted by User");
  EXPECT_TRUE(window->tree().isEnabled());
}

TEST_F(ImportWindowsTest, CancelInTheLayoutAndInTheFileBoxImportsNobody) {
  open();
  expect_window([](QWidget& box) { QTest::keyClick(&box, Qt::Key_Escape); });
  start_import();
  expect_file_box(make_file(3));
  expect_window([](QWidget& layout) { QTest::keyClick(&layout, Qt::Key_Escape); });
  start_import();
  EXPECT_EQ(run().ImportAddedCount, 0);
  EXPECT_TRUE(lab.log_tab().empty());
}

TEST_F(ImportWindowsTest, ImportOptionsStayUntilTheRangeIsOne) {
  open();
  window->tabs().setCurrentIndex(session::tab::kSetup);
  expect_window([this](QWidget& options) {
    EXPECT_FALSE(find<QLineEdit>("LowerRange", &options)->isEnabled());
    click("Grp_Range_2", &options);
    type("LowerRange", "7", &options);
    type("UpperRange", "4", &options);
    expect_box("Start value cannot be greater then Finish value");
    click("OK", &options);
    EXPECT_TRUE(options.isVisible());
    type("UpperRange", "9", &options);
    click("OK", &options);
    EXPECT_FALSE(options.isVisible());
  });
  click("IMPORT_GRP");
  std::string finish;
  lab.services.registry.Reg_Read(platform::kHiveLocalMachine, "Software\\Oxbrook\\TWK\\Setup",
                                 "ImportGroupsFinish", finish);
  EXPECT_EQ(finish, "9");
}

TEST_F(ImportWindowsTest, TheLogTabShowsRowsClearsThemAndAsksBeforeTheFileGoes) {
  open();
  window->tabs().setCurrentIndex(session::tab::kLog);
  session::LOG_TAB(lab.session, session::kYellow, "Something to look at");
  QWidget* const tab = window->tabs().currentWidget();
  auto* const list = find<QTreeView>("ListView1", tab);
  ASSERT_EQ(list->model()->rowCount(), 1);
  EXPECT_EQ(list->model()->index(0, 0).data(Qt::AccessibleTextRole).toString(),
            "YELLOW Something to look at");
  click("Log_Detail", tab);
  ASSERT_EQ(lab.process.command_lines.size(), 1U);
  expect_box("Sure to delete the log file", QMessageBox::No);
  click("Delete_Log_File", tab);
  EXPECT_NE(lab.log(), "");
  expect_box("Sure to delete the log file", QMessageBox::Yes);
  click("Delete_Log_File", tab);
  EXPECT_EQ(lab.log(), "");
  click("Clear_log", tab);
  EXPECT_EQ(list->model()->rowCount(), 0);
}

}  // namespace
}  // namespace twk::test
