#include "app/connecting_window.hpp"

#include <future>

#include "app/app_test.hpp"
#include "app/program.hpp"
#include "app/waiting_window.hpp"
#include "base/errors.hpp"
#include "support/silent_server.hpp"

namespace twk::test {
namespace {

using live::StepOutcome;

QString text_of(const QWidget& window, const char* name) {
  return window.findChild<QLabel*>(name)->text();
}

class ConnectingTest : public AppTest {
 protected:
  /// A window that is not modal, called by its name.
  void when_shown(const char* name, const std::function<void(QWidget& window)>& person) {
    for (QWidget* const window : QApplication::topLevelWidgets()) {
      if (window->objectName() == name && window->isVisible())
        return person(*window);
    }
    QTimer::singleShot(5, &context_, [this, name, person] { when_shown(name, person); });
  }
  /// No thread outlives the test.
  static void expect_all_ended() {
    EXPECT_TRUE(QTest::qWaitFor([] { return !app::Errand::is_any_left(); }));
  }
  static live::LiveSettings settings() {
    live::LiveSettings settings;
    settings.domain = "twk.test";
    settings.user = "jo";
    return settings;
  }

 private:
  QObject context_;
};

TEST_F(ConnectingTest, ShowsEachStepWithItsTimeAndCancelsAtOnce) {
  std::promise<void> answer;
  bool stopped = false;
  const auto silent = [&](const live::LiveSettings&, const live::Prompts& prompts, const auto& tell) {
    tell({"name look-up", StepOutcome::kPassed, "as " + prompts.password("jo").value_or("nobody")});
    answer.get_future().wait();
    stopped = prompts.is_stopped();
    EXPECT_EQ(prompts.password("jo"), std::nullopt);
    tell({"port", StepOutcome::kPassed, "too late"});
    return std::vector<live::CheckStep>();
  };
  when_shown("connecting", [&](QWidget& window) {
    EXPECT_TRUE(QTest::qWaitFor([&] { return text_of(window, "step0") == "as typed"; }));
    EXPECT_TRUE(text_of(window, "time0").endsWith(" s"));
    EXPECT_TRUE(QTest::qWaitFor([&] { return text_of(window, "time1").endsWith(" s"); }));
    click(window, "cancel");
  });
  const auto attempt = app::try_to_connect(
      settings(), [](const auto&) { return "typed"; }, silent);
  EXPECT_TRUE(attempt.cancelled);
  EXPECT_TRUE(app::Errand::is_any_left());
  answer.set_value();
  expect_all_ended();
  EXPECT_TRUE(stopped);
}

TEST_F(ConnectingTest, ComesBackToTheStartWindowFromASilentServer) {
  SilentServer server;
  when_shown("connecting", [](QWidget& window) {
    EXPECT_TRUE(QTest::qWaitFor([&] { return !text_of(window, "step1").isEmpty(); }));
    click(window, "cancel");
  });
  expect_window([](QWidget& start) {
    EXPECT_EQ(start.objectName(), "start");
    click(start, "quit");
  });
  app::Options options;
  options.connection = {.domain = "twk.test",
                        .server = "127.0.0.1",
                        .port = std::to_string(server.port()),
                        .method = "ldaps",
                        .user = "jo"};
  EXPECT_EQ(app::run(options), 0);
  server.shut();
  expect_all_ended();
}

TEST_F(ConnectingTest, AClosedConnectionWindowDoesNotWaitForItsTest) {
  std::promise<void> answer;
  const auto silent = [&](const auto&, const auto&, const auto&) {
    answer.get_future().wait();
    return std::vector<live::CheckStep>();
  };
  expect_window([](QWidget& window) {
    click(window, "test");
    window.close();
  });
  EXPECT_FALSE(app::choose_connection({.domain = "twk.test"}, {}, nullptr, silent));
  answer.set_value();
  expect_all_ended();
}

TEST_F(ConnectingTest, AWindowSaysWhatIsWaitedForAndTheFailureComesThrough) {
  std::promise<void> seen;
  when_shown("waiting", [&](QWidget& window) {
    EXPECT_EQ(window.findChild<QLabel*>()->text(), "Reading…");
    window.close();
    EXPECT_TRUE(window.isVisible());
    seen.set_value();
  });
  const auto read = [&] {
    seen.get_future().wait();
    base::raise(424, "no such thing");
  };
  EXPECT_THROW(app::wait_for("Reading…", read), base::RuntimeError);
}

}  // namespace
}  // namespace twk::test
