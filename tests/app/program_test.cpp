#include "app/program.hpp"

#include "app/app_test.hpp"
#include "app/start_window.hpp"
#include "base/errors.hpp"
#include "screens/main/main_window.hpp"
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

/// The window of the tip, which is above the main window; closes both.
void end_program(QWidget& tip) {
  EXPECT_EQ(tip.objectName(), "frmTip");
  EXPECT_NE(dynamic_cast<screens::MainWindow*>(tip.parentWidget()), nullptr);
  tip.close();
  QTimer::singleShot(0, close_main_window);
}

int run_in(const std::string& lab, const std::string& command_line = {}) {
  return app::run({.lab = lab, .database = {}, .command_line = command_line, .connection = {}});
}

/// A program whose lab has database files of an old generation.
class OldLabTest : public AppTest {
 protected:
  void set_data_version(const char* version) {
    screens::QtDialogs dialogs;
    world::World world(lab(), dialogs, [](const std::string&) {});
    world.stored_registry().Reg_Write(platform::kHiveLocalMachine, std::string(session::kTree) + "\\Version",
                                      "DBVersion", version);
  }
  /// A lab whose database files are of the generation.
  void make_old_lab(const std::string& name, const char* version) {
    make_lab();
    set_data_version(version);
    const std::string put = "python3 '" TWK_SOURCE_DIR "/tests/tools/old_generations_test.py' --put " + name +
                            " '" + file("lab/db") + "'";
    ASSERT_EQ(std::system(put.c_str()), 0);
  }
  /// A file kept by an earlier conversion is in the way.
  void make_stuck_lab() {
    make_old_lab("2.2", "2.2");
    put_file(file("lab/db/Template.v23"), "");
  }
  void expect_failing_conversion() {
    expect_box("older version of Template.dat");
    expect_box("Error renaming template files.");
  }
  const WorkingDirectory working_{file("")};  ///< of Convert.log
};

TEST_F(OldLabTest, IsConvertedAtTheStartAndShownInTheWindow) {
  make_old_lab("1", "1.3");
  for (const char* const old :
       {"older version of Site.dat/Template.dat", "older versions of Permissions.dat & SharePerm.dat"}) {
    expect_box(old);
    expect_box("Conversion Complete");
  }
  expect_window([](QWidget& tip) {
    EXPECT_EQ(tip.parentWidget()->findChild<QComboBox*>("templatelst")->count(), 2);
    EXPECT_EQ(tip.parentWidget()->findChild<QTreeView*>("ListView2")->model()->rowCount(), 2);
    end_program(tip);
  });
  EXPECT_EQ(run_in(lab()), 0);
  // The second start has nothing to report.
  expect_window(end_program);
  EXPECT_EQ(run_in(lab()), 0);
}

TEST_F(ProgramTest, ShowsTheMainWindowWithTheTipOverItAndEndsWhenItIsClosed) {
  make_lab();
  expect_window([](QWidget& tip) {
    EXPECT_EQ(tip.parentWidget()->findChild<QLabel*>("panel1")->text(), "Debug Mode.");
    end_program(tip);
  });
  EXPECT_EQ(run_in(lab(), "/DEBUG"), 0);
  EXPECT_EQ(app::recent_labs().value(0).toStdString(), lab());
}

TEST_F(ProgramTest, TheMainWindowSaysWhereItWorksAndItsMenuLeadsToAnotherLab) {
  make_lab();
  const QString first = QString::fromStdString(lab());
  const QString second = QString::fromStdString(file("other"));
  std::filesystem::copy(lab(), file("other"), std::filesystem::copy_options::recursive);
  app::remember_lab(second);
  const auto expect_place = [](const QWidget& tip, const QString& folder) {
    const QWidget* const window = tip.parentWidget();
    EXPECT_TRUE(window->windowTitle().startsWith("Lab ")) << window->windowTitle().toStdString();
    EXPECT_TRUE(window->windowTitle().contains(folder)) << window->windowTitle().toStdString();
    EXPECT_TRUE(window->findChild<QLabel*>("badge")->text().startsWith("LAB "));
  };
  expect_window([&](QWidget& tip) {
    expect_place(tip, first);
    QWidget* const window = tip.parentWidget();
    tip.close();
    QTimer::singleShot(0, window, [&, window] {
      for (QAction* const entry : window->findChild<QMenu*>("recent_labs")->actions()) {
        EXPECT_EQ(entry->isEnabled(), entry->text() != first);
        if (entry->text() == second)
          entry->trigger();
      }
    });
  });
  expect_window([&](QWidget& tip) {
    expect_place(tip, second);
    end_program(tip);
  });
  EXPECT_EQ(run_in(lab()), 0);
}

TEST_F(OldLabTest, ReportsANamedLabThatCannotBeOpenedAndEndsWith65) {
  make_stuck_lab();
  std::filesystem::create_directories(file("garbled"));
  put_file(file("garbled/lab.conf"), "kind = nonsense\n");
  for (const auto& [folder, text] : std::vector<std::pair<std::string, const char*>>{
           {file("nowhere"), "no lab"}, {file("garbled"), "lab.conf:1"}, {lab(), "\"2.2\""}}) {
    if (folder == lab())
      expect_failing_conversion();
    expect_box(text);
    EXPECT_EQ(run_in(folder), app::kExitBadData);
  }
}

TEST_F(OldLabTest, ComesBackToTheStartWindowAfterALabThatCannotBeOpened) {
  make_stuck_lab();
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
