#include "live/domain/connection_check.hpp"

#include "live/domain/live_environment.hpp"
#include "live/logon/network_probe.hpp"
#include "platform/directory.hpp"
#include "support/number_of.hpp"
#include "support/silent_server.hpp"
#include "support/variable.hpp"

namespace twk::live {
namespace {

using test::SilentServer;
using testing::ElementsAre;
using testing::ElementsAreArray;
using testing::HasSubstr;

namespace ads_error = platform::ads_error;

/// No ticket of the person who runs the tests is seen.
class WithoutTicket : public testing::Test {
 protected:
  const test::Variable ticket_{"KRB5CCNAME", "FILE:/nonexistent/ticket"};
  const test::Variable kerberos_{"KRB5_CONFIG", "/dev/null"};
  static LiveSettings settings(std::uint16_t port, LiveSettings::Logon logon = LiveSettings::Logon::kTicket) {
    LiveSettings settings;
    settings.domain = "twk.test";
    settings.server = "127.0.0.1";
    settings.port = port;
    settings.logon = logon;
    settings.timeout_seconds = 1;
    if (logon == LiveSettings::Logon::kPassword)
      settings.user = "jo";
    return settings;
  }
  static std::vector<StepOutcome> outcomes(const std::vector<CheckStep>& steps) {
    std::vector<StepOutcome> all;
    for (const CheckStep& step : steps)
      all.push_back(step.outcome);
    return all;
  }
  static std::vector<StepOutcome> followed_by_skipped(std::vector<StepOutcome> first) {
    first.resize(check_step_names().size(), kSkipped);
    return first;
  }
  static constexpr StepOutcome kPassed = StepOutcome::kPassed;
  static constexpr StepOutcome kFailed = StepOutcome::kFailed;
  static constexpr StepOutcome kSkipped = StepOutcome::kSkipped;
};

TEST_F(WithoutTicket, TheCheckReportsEachStepAsItEnds) {
  SilentServer server;
  std::vector<std::string> told;
  const auto steps = check_connection(settings(server.port()), {}, {},
                                      [&](const CheckStep& step) { told.push_back(step.name); });
  EXPECT_EQ(told, check_step_names());
  EXPECT_THAT(outcomes(steps), ElementsAreArray(followed_by_skipped({kPassed, kPassed, kSkipped, kFailed})));
  EXPECT_THAT(steps[3].detail, HasSubstr("There is no Kerberos ticket"));
  EXPECT_EQ(worst_outcome(steps), kFailed);
}

TEST_F(WithoutTicket, AClosedPortEndsWhatNeedsTheNetwork) {
  SilentServer server;
  server.shut();
  const auto steps = check_connection(settings(server.port()), {}, {}, {});
  EXPECT_THAT(outcomes(steps), ElementsAreArray(followed_by_skipped({kPassed, kFailed, kSkipped, kFailed})));
  EXPECT_THAT(steps[1].detail, HasSubstr("Connection refused. Check that"));
}

TEST_F(WithoutTicket, AStoppedCheckSkipsWhatIsLeft) {
  SilentServer server;
  bool stopped = false;
  const auto steps = check_connection(settings(server.port()),
                                      {.password = {}, .tell = {}, .is_stopped = [&] { return stopped; }}, {},
                                      [&](const CheckStep& step) { stopped |= step.name == "port"; });
  EXPECT_THAT(outcomes(steps), ElementsAreArray(followed_by_skipped({kPassed, kPassed})));
}

TEST_F(WithoutTicket, AServerThatIsSilentDoesNotHoldTlsUpForLong) {
  SilentServer server;
  const auto steps = check_connection(settings(server.port(), LiveSettings::Logon::kPassword), {}, {}, {});
  EXPECT_THAT(outcomes(steps), ElementsAreArray(followed_by_skipped({kPassed, kPassed, kFailed})));
  EXPECT_THAT(steps[2].detail, HasSubstr("TLS"));
}

TEST_F(WithoutTicket, ADomainWithoutADotHasNoDirectory) {
  SilentServer server;
  LiveSettings nt = settings(0);
  nt.domain = "OLDNT";
  const auto steps = check_connection(nt, {}, {}, {});
  EXPECT_EQ(steps[0].outcome, kPassed);
  EXPECT_EQ(steps[4].outcome, kSkipped);
  EXPECT_THAT(steps[5].detail, HasSubstr("NT domain"));
}

TEST_F(WithoutTicket, ThePasswordIsAskedForOnceAndARefusedOneNotTriedAgain) {
  int asked = 0;
  LiveSettings password = settings(389, LiveSettings::Logon::kPassword);
  Credentials credentials(password, {.password =
                                         [&](const std::string& user) {
                                           EXPECT_EQ(user, "jo");
                                           ++asked;
                                           return std::optional<std::string>("secret");
                                         },
                                     .tell = {}});
  EXPECT_EQ(credentials.password(), "secret");
  EXPECT_EQ(credentials.password(), "secret");
  EXPECT_EQ(asked, 1);
  credentials.refuse_password(base::RuntimeError(ads_error::kLogonFailure, "wrong"));
  EXPECT_EQ(test::complaint_of([&] { credentials.password(); }), "wrong");
}

TEST_F(WithoutTicket, NoPasswordIsALogonThatFails) {
  Credentials credentials(settings(389, LiveSettings::Logon::kPassword),
                          {.password = [](const std::string&) { return std::nullopt; }, .tell = {}});
  EXPECT_EQ(test::number_of([&] { credentials.password(); }), ads_error::kLogonFailure);
}

TEST_F(WithoutTicket, AFailureIsReportedOnceUntilThereIsAConnectionAgain) {
  std::vector<std::string> told;
  Credentials credentials(settings(389),
                          {.password = {}, .tell = [&](const std::string& text) { told.push_back(text); }});
  credentials.tell_recovery();
  credentials.tell_failure("gone");
  credentials.tell_failure("gone");
  credentials.tell_recovery();
  credentials.tell_failure("gone");
  EXPECT_THAT(told, ElementsAre("gone", "The domain is connected again", "gone"));
}

TEST_F(WithoutTicket, TheEnvironmentDescribesThePersonWhoLogsOn) {
  LiveSettings password = settings(389, LiveSettings::Logon::kPassword);
  for (const char* const user : {"jo", "TWK\\jo", "jo@twk.test"}) {
    password.user = user;
    LiveDomain domain(password);
    LiveEnvironment environment(domain);
    EXPECT_EQ(environment.variable("USERNAME"), "jo");
    EXPECT_EQ(environment.variable("LOGONSERVER"), "\\\\127.0.0.1");
    EXPECT_EQ(environment.variable("USERDOMAIN"), "");
    EXPECT_EQ(environment.variable("KRB5_CONFIG"), "/dev/null");
  }
}

TEST(NetworkProbe, ReportsAMissingHost) {
  base::Trap trap;
  trap([] { resolve_host("no-such-host.invalid"); });
  EXPECT_EQ(trap.number(), ads_error::kServerDown);
  EXPECT_THAT(trap.description(), HasSubstr("no-such-host.invalid"));
  EXPECT_THAT(resolve_host("127.0.0.1"), ElementsAre("127.0.0.1"));
}

}  // namespace
}  // namespace twk::live
