#include "app/single_instance.hpp"

#include <csignal>
#include <map>

#include "app/app_test.hpp"

namespace twk::test {
namespace {

/// The built program, ended at the end of its scope.
class Program {
 public:
  explicit Program(const std::string& lab) {
    process_.setProcessChannelMode(QProcess::ForwardedChannels);
    process_.start(TWK_BIN_DIR "/tarnwick", {"--lab", QString::fromStdString(lab)});
  }
  Program(const Program&) = delete;
  Program& operator=(const Program&) = delete;
  ~Program() {
    process_.kill();
    process_.waitForFinished();
  }

  /// Its exit code; -1 when it does not end.
  int exit_code() {
    const bool ended = QTest::qWaitFor([this] { return process_.state() == QProcess::NotRunning; }, 20000);
    return ended ? process_.exitCode() : -1;
  }
  void end_by_signal() {
    kill(static_cast<pid_t>(process_.processId()), SIGKILL);
    process_.waitForFinished();
  }

 private:
  QProcess process_;
};

using Stamps = std::map<std::string, std::filesystem::file_time_type>;

Stamps stamps_below(const std::string& folder) {
  Stamps stamps;
  for (const auto& entry : std::filesystem::recursive_directory_iterator(folder))
    stamps[entry.path()] = entry.last_write_time();
  return stamps;
}

/// Searched without an instance in the test itself, which the program would take for the first.
bool socket_is_there() {
  return !QDir(qEnvironmentVariable("XDG_RUNTIME_DIR")).entryList({"tarnwick-*"}, QDir::System).empty();
}

using SingleInstanceTest = AppTest;

TEST_F(SingleInstanceTest, ASecondStartRestoresTheFirstAndEndsWithoutTouchingALab) {
  const Stamps before = stamps_below(make_lab());
  const app::SingleInstance first;
  ASSERT_TRUE(first.is_first());
  QMainWindow window;
  window.showMinimized();
  Program second(lab());
  EXPECT_EQ(second.exit_code(), 0);
  EXPECT_TRUE(QTest::qWaitFor([&] { return !window.isMinimized(); }));
  EXPECT_TRUE(window.isActiveWindow());
  EXPECT_EQ(stamps_below(lab()), before);
}

TEST_F(SingleInstanceTest, TheFirstComesForwardWithAModalWindowOverIt) {
  const app::SingleInstance first;
  QMainWindow window;
  window.showMinimized();
  QDialog modal(&window);
  expect_window([&](QWidget&) {
    Program second("");
    EXPECT_EQ(second.exit_code(), 0);
    EXPECT_TRUE(QTest::qWaitFor([&] { return !window.isMinimized(); }));
    EXPECT_TRUE(modal.isActiveWindow());
    modal.accept();
  });
  modal.exec();
}

TEST_F(SingleInstanceTest, TheFirstGetsTheSecondsRightToComeForward) {
  const app::SingleInstance first;
  qputenv("XDG_ACTIVATION_TOKEN", "token-1");
  Program second("");
  qunsetenv("XDG_ACTIVATION_TOKEN");
  EXPECT_EQ(second.exit_code(), 0);
  EXPECT_TRUE(QTest::qWaitFor([] { return qgetenv("XDG_ACTIVATION_TOKEN") == "token-1"; }));
  qunsetenv("XDG_ACTIVATION_TOKEN");
}

TEST_F(SingleInstanceTest, AKilledProgramBlocksNobody) {
  make_lab();
  {
    Program first(lab());
    ASSERT_TRUE(QTest::qWaitFor(socket_is_there, 20000));
    const app::SingleInstance probe;
    EXPECT_FALSE(probe.is_first());
    first.end_by_signal();
  }
  const app::SingleInstance next;
  EXPECT_TRUE(next.is_first());
  Program second(lab());
  EXPECT_EQ(second.exit_code(), 0);
}

}  // namespace
}  // namespace twk::test
