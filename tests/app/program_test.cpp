#include "app/program.hpp"

#include "app/app_test.hpp"
#include "app/start_window.hpp"
#include "base/errors.hpp"
#include "screens/main_window.hpp"
#include "session/settings.hpp"

namespace twk::test {
namespace {

using ProgramTest = AppTest;

void close_main_window() {
  for (QWidget* const window : QApplication::topLevelWidgets()) {
    if (dynamic_cast<screens::MainWindow*>(window) != nullptr)
      window->close();
  }
}

/// The window of the tip, which stands over the main window; closes both.
void end_program(QWidget& tip) {
  EXPECT_EQ(tip.objectName(), "frmTip");
  EXPECT_NE(dynamic_cast<screens::MainWindow*>(tip.parentWidget()), nullptr);
  tip.close();
  QTimer::singleShot(0, close_main_window);
}

/// A program whose lab has templates of an old generation, and in the way of their conversion a kept file.
class OldLabTest : public AppTest {
 protected:
  void make_old_lab() {
    make_lab();
    screens::QtDialogs dialogs;
    world::World world(lab(), dialogs, [](const std::string&) {});
    world.stored_registry().Reg_Write(platform::kHiveLocalMachine, std::string(session::kTree) + "\\Version",
                                      "DBVersion", "2.2");
    put_file(file("lab/db/Template.v23"), "");
  }
  void expect_failing_conversion() {
    expect_box("older version of Template.dat");
    expect_box("Error renaming template files.");
  }
};

TEST_F(ProgramTest, ShowsTheMainWindowWithTheTipOverItAndEndsWhenItIsClosed) {
  make_lab();
  expect_window(end_program);
  EXPECT_EQ(app::run({.lab = lab(), .database = {}, .command_line = {}}), 0);
  EXPECT_EQ(app::recent_labs().value(0).toStdString(), lab());
}

TEST_F(ProgramTest, SaysDebugModeInTheStatusBar) {
  make_lab();
  expect_window([](QWidget& tip) {
    const auto* const panel = tip.parentWidget()->findChild<QLabel*>("panel1");
    ASSERT_NE(panel, nullptr);
    EXPECT_EQ(panel->text(), "Debug Mode.");
    end_program(tip);
  });
  EXPECT_EQ(app::run({.lab = lab(), .database = {}, .command_line = "/DEBUG"}), 0);
}

TEST_F(OldLabTest, TellsOfANamedLabThatCannotBeOpenedAndEndsWith65) {
  make_old_lab();
  std::filesystem::create_directories(file("garbled"));
  put_file(file("garbled/lab.conf"), "kind = nonsense\n");
  for (const auto& [folder, text] : std::vector<std::pair<std::string, const char*>>{
           {file("nowhere"), "no lab"}, {file("garbled"), "lab.conf:1"}, {lab(), "\"2.2\""}}) {
    if (folder == lab())
      expect_failing_conversion();
    expect_box(text);
    EXPECT_EQ(app::run({.lab = folder, .database = {}, .command_line = {}}), app::kExitBadData);
  }
}

TEST_F(OldLabTest, ComesBackToTheStartWindowAfterALabThatCannotBeOpened) {
  make_old_lab();
  app::remember_lab(QString::fromStdString(lab()));
  expect_window([](QWidget& start) { click(start, "again"); });
  expect_failing_conversion();
  expect_box("\"2.2\"");
  expect_window([](QWidget& start) {
    EXPECT_EQ(start.objectName(), "start");
    click(start, "quit");
  });
  EXPECT_EQ(app::run({}), 0);
}

TEST_F(ProgramTest, MakesASampleLabAndWorksInIt) {
  expect_window([](QWidget& start) { click(start, "make"); });
  expect_window([this](QWidget& window) {
    window.findChild<QLineEdit*>("folder")->setText(QString::fromStdString(lab()));
    window.findChild<QLineEdit*>("domain")->setText("undotted");
    click(window, "make_lab");
    window.findChild<QLineEdit*>("domain")->setText("school.test");
    click(window, "make_lab");
  });
  expect_box("has a dot");
  expect_window([](QWidget& tip) {
    auto* const window = dynamic_cast<screens::MainWindow*>(tip.parentWidget());
    ASSERT_NE(window, nullptr);
    const auto* const tree = window->tree().model();
    EXPECT_EQ(tree->index(0, 0).data().toString(), "school.test");
    end_program(tip);
  });
  EXPECT_EQ(app::run({}), 0);
}

TEST_F(ProgramTest, EndsWith70AndTheDescriptionAfterAFailureThatNothingTrapped) {
  const auto fail = [this] {
    expect_box("no such thing");
    app::end_on_failure(base::RuntimeError(424, "no such thing"));
  };
  EXPECT_EXIT(fail(), testing::ExitedWithCode(app::kExitFault), "no such thing");
}

}  // namespace
}  // namespace twk::test
