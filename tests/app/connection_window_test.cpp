#include "app/connection_window.hpp"

#include <gmock/gmock.h>

#include <future>

#include "app/app_test.hpp"
#include "app/program.hpp"
#include "app/server_trial.hpp"
#include "screens/main/main_window.hpp"
#include "world/stored_connection.hpp"

namespace twk::test {
namespace {

using live::CheckStep;
using live::StepOutcome;

void type(QWidget& window, const char* name, const QString& text) {
  auto* const line = window.findChild<QLineEdit*>(name);
  ASSERT_NE(line, nullptr) << name;
  line->setText(text);
}

void choose_method(QWidget& window, const char* word) {
  auto* const method = window.findChild<QComboBox*>("method");
  method->setCurrentIndex(method->findData(word));
}

QString step(QWidget& window, int number) {
  return window.findChild<QLabel*>("step" + QString::number(number))->text();
}

class ConnectionWindowTest : public AppTest {
 protected:
  ~ConnectionWindowTest() override {
    std::error_code missing;
    std::filesystem::remove_all(live::user_folders().config + "/settings", missing);
  }
  static world::ConnectionOptions closed_port() {
    return {.domain = "twk.test", .server = "127.0.0.1", .port = "1"};
  }
  static int run(const world::ConnectionOptions& connection) {
    app::Options options;
    options.connection = connection;
    return app::run(options);
  }
};

TEST_F(ConnectionWindowTest, ReturnsWhatWasTyped) {
  expect_window([](QWidget& window) {
    EXPECT_EQ(window.findChild<QComboBox*>("domain")->currentText(), "twk.test");
    EXPECT_EQ(window.findChild<QLabel*>("problem"), nullptr);
    EXPECT_EQ(window.findChild<QLineEdit*>("password")->echoMode(), QLineEdit::Password);
    type(window, "server", " dc1.twk.test ");
    choose_method(window, "ldaps");
    type(window, "user", "jo");
    type(window, "password", "secret ");
    type(window, "ca_file", "/etc/ca.pem");
    click(window, "connect");
  });
  const auto chosen = app::choose_connection({.domain = "twk.test"}, {}, nullptr);
  ASSERT_TRUE(chosen);
  EXPECT_EQ(chosen->options.domain, "twk.test");
  EXPECT_EQ(chosen->options.server, "dc1.twk.test");
  EXPECT_EQ(chosen->options.method, "ldaps");
  EXPECT_EQ(chosen->options.user, "jo");
  EXPECT_EQ(chosen->options.ca_file, "/etc/ca.pem");
  EXPECT_EQ(chosen->password, "secret ");
  EXPECT_FALSE(chosen->without_domain);
}

TEST_F(ConnectionWindowTest, StaysWhenAFieldIsInvalid) {
  expect_window([](QWidget& window) {
    type(window, "port", "much");
    click(window, "connect");
    EXPECT_TRUE(window.isVisible());
    window.close();
  });
  expect_box("much");
  EXPECT_FALSE(app::choose_connection({.domain = "twk.test"}, {}, nullptr));
}

TEST_F(ConnectionWindowTest, ShowsEachStepOfItsTestInTheBackground) {
  const auto test = [](const live::LiveSettings& settings, const live::Prompts&, const auto& tell) {
    std::vector<CheckStep> steps = {{"name look-up", StepOutcome::kPassed, settings.domain},
                                    {"port", StepOutcome::kFailed, "no answer " + settings.password}};
    steps.resize(9);
    steps.push_back({"file server FS1", StepOutcome::kPassed, "logged on"});
    steps.push_back({"file server FS2", StepOutcome::kWarning, "there is no share"});
    for (const CheckStep& one : steps)
      tell(one);
    return steps;
  };
  expect_window([](QWidget& window) {
    type(window, "password", "typed");
    auto* const button = window.findChild<QPushButton*>("test");
    click(window, "test");
    EXPECT_EQ(button->text(), "&Stop Test");
    EXPECT_TRUE(QTest::qWaitFor([&] { return button->text() == "&Test connection"; }));
    EXPECT_EQ(step(window, 0), "twk.test");
    EXPECT_EQ(step(window, 1), "no answer typed");
    EXPECT_EQ(step(window, 2), "");
    EXPECT_EQ(step(window, 10), "there is no share");
    window.close();
  });
  app::choose_connection({.domain = "twk.test"}, {}, nullptr, test);
}

TEST_F(ConnectionWindowTest, StopsItsTestAtOnceAndBeginsAnother) {
  std::promise<void> answer;
  const auto silent = [&, reply = answer.get_future().share()](const auto&, const auto&, const auto& tell) {
    tell({"name look-up", StepOutcome::kPassed, "found"});
    reply.wait();
    tell({"port", StepOutcome::kPassed, "late"});
    return std::vector<CheckStep>();
  };
  expect_window([&](QWidget& window) {
    click(window, "test");
    EXPECT_TRUE(QTest::qWaitFor([&] { return step(window, 1) == "trying…"; }));
    EXPECT_TRUE(window.findChild<QLabel*>("time1")->text().endsWith(" s"));
    click(window, "test");
    EXPECT_EQ(step(window, 1), "stopped");
    answer.set_value();
    click(window, "test");
    EXPECT_TRUE(QTest::qWaitFor([&] { return step(window, 1) == "late"; }));
    window.close();
  });
  app::choose_connection({.domain = "twk.test"}, {}, nullptr, silent);
  EXPECT_TRUE(QTest::qWaitFor([] { return !app::Errand::is_any_left(); }));
}

/// Of a lab's database, whose servers this workstation does not know.
TEST_F(ConnectionWindowTest, LooksAtTheFileServersOfTheSitesInAProcessThatCanBeEnded) {
  live::LiveSettings settings;
  settings.domain = "twk.test";
  settings.server = "127.0.0.1";
  const std::string database = make_lab() + "/db";
  std::size_t told = 0;
  const auto tell = [&](const CheckStep&) { ++told; };
  const auto steps = app::try_servers(settings, database, {}, tell);
  ASSERT_FALSE(steps.empty());
  EXPECT_TRUE(steps[0].name.starts_with("file server ")) << steps[0].name << steps[0].detail;
  EXPECT_THAT(steps[0].detail, testing::HasSubstr("its shares cannot be read"));
  EXPECT_EQ(told, steps.size());
  EXPECT_TRUE(app::try_servers(settings, database, {{}, {}, [] { return true; }}, tell).empty());
}

TEST_F(ConnectionWindowTest, ComesWithTheReasonWhenADomainDoesNotAnswer) {
  expect_window([](QWidget& window) {
    const auto* const problem = window.findChild<QLabel*>("problem");
    ASSERT_NE(problem, nullptr) << window.objectName().toStdString();
    EXPECT_TRUE(problem->text().contains("step \"port\": No answer from 127.0.0.1 on port 1"));
    EXPECT_TRUE(problem->text().contains("Check that"));
    EXPECT_EQ(step(window, 0), "127.0.0.1 is 127.0.0.1");
    click(window, "help");
    EXPECT_EQ(window.findChild<QTextBrowser*>("page")->textCursor().selectedText(), "port");
    EXPECT_EQ(window.findChild<QLineEdit*>("port")->text(), "1");
    window.close();
  });
  EXPECT_EQ(run(closed_port()), app::kExitBadData);
  EXPECT_EQ(world::stored_connection(live::user_folders()).domain, "");
}

TEST_F(ConnectionWindowTest, LetsAPersonWorkWithoutTheDomainAndComeBackToIt) {
  expect_window([](QWidget& window) { click(window, "without"); });
  expect_window([](QWidget& tip) {
    auto* const main = dynamic_cast<screens::MainWindow*>(tip.parentWidget());
    ASSERT_NE(main, nullptr);
    tip.close();
    QTimer::singleShot(0, main, [main] {
      main->findChild<QAction*>("connection")->trigger();
      main->close();
    });
  });
  expect_window([](QWidget& window) {
    EXPECT_EQ(window.findChild<QLineEdit*>("server")->text(), "127.0.0.1");
    type(window, "server", "127.0.0.2");
    click(window, "connect");
  });
  EXPECT_EQ(run(closed_port()), 0);
  EXPECT_EQ(world::stored_connection(live::user_folders()).server, "127.0.0.2");
}

TEST_F(ConnectionWindowTest, IsOfferedByTheStartWindow) {
  expect_window([](QWidget& start) { click(start, "connect"); });
  expect_window([](QWidget& window) {
    EXPECT_EQ(window.objectName(), "connection");
    window.close();
  });
  expect_window([](QWidget& start) { click(start, "quit"); });
  EXPECT_EQ(app::run({}), 0);
}

}  // namespace
}  // namespace twk::test
