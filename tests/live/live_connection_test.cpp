#include <array>
#include <ctime>
#include <filesystem>
#include <thread>

#include "base/text.hpp"
#include "live/domain/connection_check.hpp"
#include "live/domain/discover_domains.hpp"
#include "live/live.hpp"
#include "live/live_world.hpp"
#include "local/refused_writes.hpp"
#include "support/run_program.hpp"
#include "support/temporary_directory.hpp"
#include "world/real_domains.hpp"
#include "world/snapshot.hpp"

/// Logging on to the controller that `with-domain` started, and every way in which that fails.
namespace twk::test {
namespace {

using live::CheckStep;
using live::LiveDomain;
using live::LiveSettings;
using live::StepOutcome;
using testing::HasSubstr;
using testing::StartsWith;
namespace ads_error = platform::ads_error;

LiveSettings by_password(LiveSettings::Tls tls) {
  LiveSettings settings = password_settings();
  settings.tls = tls;
  settings.ca_file = variable("TWK_LIVE_STATE") + "/domain/private/tls/ca.pem";
  return settings;
}

/// The ticket is got with the password.
LiveSettings by_ticket_of_password() {
  LiveSettings settings = by_password(LiveSettings::Tls::kLdaps);
  settings.logon = LiveSettings::Logon::kTicket;
  return settings;
}

CheckStep step_of(const LiveSettings& settings, const std::string& name) {
  for (const CheckStep& step : live::check_connection(settings, {}, {}, {})) {
    if (step.name == name)
      return step;
  }
  return {};
}

std::string describe(const std::vector<CheckStep>& steps) {
  std::string text;
  for (const CheckStep& step : steps)
    text += step.name + " " + std::string(live::outcome_word(step.outcome)) + ": " + step.detail + "\n";
  return text;
}

/// A ticket of the administrator with that lifetime, in the cache of that file.
void get_ticket(const std::string& cache, int seconds) {
  const ProgramResult result =
      run_program({.arguments = {"/usr/bin/kinit", "-c", "FILE:" + cache, "-l", std::to_string(seconds) + "s",
                                 variable("TWK_LIVE_ADMIN") + "@TWK.TEST"},
                   .input = variable("TWK_LIVE_PASSWORD") + "\n",
                   .environment = {}});
  ASSERT_EQ(result.exit_code, 0) << result.err;
}

TEST(LiveConnection, EveryWayOfLoggingOnPassesEveryStepItHas) {
  for (const LiveSettings& settings : {live_settings(), by_password(LiveSettings::Tls::kLdaps),
                                       by_password(LiveSettings::Tls::kStartTls), by_ticket_of_password()}) {
    const auto steps = live::check_connection(settings, {}, {}, {});
    EXPECT_EQ(live::worst_outcome(steps), StepOutcome::kPassed) << describe(steps);
    LiveDomain domain(settings);
    EXPECT_EQ(domain.netbios(), "TWK");
    EXPECT_EQ(domain.ldap({}, true).read("DC=twk,DC=test", {"objectClass"}).dn, "DC=twk,DC=test");
  }
}

TEST(LiveConnection, FindsTheControllerWhenOnlyTheDomainIsNamed) {
  LiveSettings settings = live_settings();
  settings.server.clear();
  LiveDomain domain(settings);
  EXPECT_TRUE(base::equals_fold(domain.controller(), "dc1.twk.test")) << domain.controller();
  domain.ldap().open();
  EXPECT_EQ(live::usual_domain(), "twk.test");
  EXPECT_THAT(live::discover_domains(), testing::Contains("twk.test"));
}

TEST(LiveConnection, ReadsTheTicketOfThePersonAndLeavesItsCacheAsItIs) {
  const TemporaryDirectory folder;
  const std::string cache = folder / "ticket";
  get_ticket(cache, 3600);
  const std::string before = get_file(cache);
  const Variable other("KRB5CCNAME", "FILE:" + cache);
  LiveDomain domain(live_settings());
  EXPECT_EQ(domain.netbios(), "TWK");
  EXPECT_EQ(get_file(cache), before);
}

struct Refusal {
  const char* name;
  void (*spoil)(LiveSettings& settings);
  LiveSettings (*settings)();
  const char* step;
  const char* text;
};

LiveSettings ldaps() {
  return by_password(LiveSettings::Tls::kLdaps);
}
LiveSettings start_tls() {
  return by_password(LiveSettings::Tls::kStartTls);
}
void with_wrong_password(LiveSettings& settings) {
  settings.password = "not-the-password";
}
void with_unknown_user(LiveSettings& settings) {
  settings.user = "nobody-of-that-name";
}
void without_ca(LiveSettings& settings) {
  settings.ca_file.clear();
}

class EveryRefusedConnection : public testing::TestWithParam<Refusal> {};

TEST_P(EveryRefusedConnection, FailsAtItsStepWithWhatIsWrong) {
  LiveSettings settings = GetParam().settings();
  GetParam().spoil(settings);
  const CheckStep step = step_of(settings, GetParam().step);
  EXPECT_EQ(step.outcome, StepOutcome::kFailed) << describe(live::check_connection(settings, {}, {}, {}));
  EXPECT_THAT(step.detail, HasSubstr(GetParam().text));
  LiveDomain domain(settings);
  // The check adds what to do.
  EXPECT_THAT(step.detail, StartsWith(complaint_of([&] { domain.ldap().open(); })));
}

INSTANTIATE_TEST_SUITE_P(
    Live, EveryRefusedConnection,
    testing::Values(
        Refusal{"UnknownHost", [](LiveSettings& s) { s.server = "dc9.twk.test"; }, live_settings,
                "name look-up", "dc9.twk.test"},
        Refusal{"ClosedPort", [](LiveSettings& s) { s.port = 3890; }, live_settings, "port",
                "dc1.twk.test on port 3890: Connection refused"},
        Refusal{"CertificateOverTls", without_ca, ldaps, "TLS", "certificate"},
        Refusal{"CertificateWithStartTls", without_ca, start_tls, "TLS", "certificate"},
        Refusal{"WrongAuthority", [](LiveSettings& s) { s.ca_file = "/etc/ssl/certs/ca-certificates.crt"; },
                ldaps, "TLS", "ca-certificates.crt has signed it"},
        Refusal{"NoAuthorityFile", [](LiveSettings& s) { s.ca_file = "/nonexistent/ca.pem"; }, ldaps, "TLS",
                "/nonexistent/ca.pem cannot be read"},
        Refusal{"CertificateOfAnotherHost", [](LiveSettings& s) { s.server = "localhost"; }, ldaps, "TLS",
                "names another host"},
        Refusal{"WrongPassword", with_wrong_password, ldaps, "bind", "user or password is wrong"},
        Refusal{"WrongPasswordWithStartTls", with_wrong_password, start_tls, "bind",
                "user or password is wrong"},
        Refusal{"WrongPasswordForATicket", with_wrong_password, by_ticket_of_password, "ticket", "is wrong"},
        Refusal{"UnknownUser", with_unknown_user, ldaps, "bind", "is refused"},
        Refusal{"UnknownUserForATicket", with_unknown_user, by_ticket_of_password, "ticket",
                "has no user nobody-of-that-name@TWK.TEST"},
        Refusal{"ServerByAnotherName", [](LiveSettings& s) { s.server = "localhost"; }, live_settings, "bind",
                "knows no server localhost"}),
    [](const auto& named) { return named.param.name; });

TEST(RefusedTicket, NoneAtAll) {
  const Variable none("KRB5CCNAME", "FILE:/nonexistent/ticket");
  EXPECT_THAT(step_of(live_settings(), "ticket").detail, HasSubstr("There is no Kerberos ticket"));
}

TEST(RefusedTicket, OneThatHasExpired) {
  const TemporaryDirectory folder;
  const Variable other("KRB5CCNAME", "FILE:" + (folder / "ticket"));
  get_ticket(folder / "ticket", 1);
  std::this_thread::sleep_for(std::chrono::seconds(2));
  EXPECT_THAT(step_of(live_settings(), "ticket").detail, HasSubstr("TWK.TEST ended at "));
}

TEST(RefusedTicket, AClockThatIsWrong) {
  const Variable shift("TWK_CLOCK_SHIFT", "3600");
  const CheckStep step = step_of(live_settings(), "bind");
  EXPECT_EQ(step.outcome, StepOutcome::kFailed);
  EXPECT_THAT(step.detail, HasSubstr("The clock of this computer differs"));
}

TEST(RefusedTicket, ALibraryWithoutThePlugIn) {
  const ProgramResult result =
      run_program({.arguments = {TWK_BIN_DIR "/twk", "--domain", "twk.test", "doctor"},
                   .input = {},
                   .environment = {{"SASL_PATH", "/nonexistent"}}});
  EXPECT_EQ(result.exit_code, 2) << result.err;
  EXPECT_THAT(result.out, HasSubstr("libsasl2-modules-gssapi-mit"));
}

/// A user of the domain who may only read.
class Reader : public testing::Test {
 protected:
  Reader() {
    user_ = contract::get_entry(world_, world_.unit())->Create("user", "cn=Reader");
    store(user_, {{"samAccountName", "reader"}});
    user_->SetPassword("Read-0nly-pls");
    settings_.user = "reader";
    settings_.password = "Read-0nly-pls";
  }
  LiveWorld world_;
  platform::ObjectPtr user_;
  LiveSettings settings_ = ldaps();
};

TEST_F(Reader, IsWarnedOfTooFewRightsAndRefusedWhatItMayNotDo) {
  const CheckStep step = step_of(settings_, "rights");
  EXPECT_EQ(step.outcome, StepOutcome::kWarning);
  EXPECT_THAT(step.detail, HasSubstr("too few rights to create users in CN=Users,DC=twk,DC=test"));
  LiveDomain domain(settings_);
  live::LiveDirectory directory(domain);
  const auto unit = directory.GetObject("LDAP://twk.test/" + world_.unit());
  base::Trap trap;
  trap([&] { store(unit->Create("user", "cn=Another"), {{"samAccountName", "another"}}); });
  EXPECT_EQ(trap.number(), ads_error::kAccessDenied);
  EXPECT_THAT(trap.description(), HasSubstr("too few rights"));
}

TEST_F(Reader, IsToldThatItsAccountIsDisabled) {
  store(user_, {{"userAccountControl", 514}});
  EXPECT_THAT(step_of(settings_, "bind").detail, HasSubstr("disabled"));
  settings_.logon = LiveSettings::Logon::kTicket;
  EXPECT_THAT(step_of(settings_, "ticket").detail, HasSubstr("disabled"));
}

TEST(LostConnection, IsReportedOnceAndThatItIsBack) {
  std::vector<std::string> told;
  LiveDomain domain(live_settings(),
                    {.password = {}, .tell = [&](const std::string& text) { told.push_back(text); }});
  domain.ldap().open();
  control("stop");
  base::Trap trap;
  for (int i = 0; i < 2; ++i) {
    EXPECT_FALSE(trap([&] { domain.ldap().read("", {"dnsHostName"}); }));
    EXPECT_EQ(trap.number(), ads_error::kServerDown);
    EXPECT_THAT(trap.description(), HasSubstr("No answer from dc1.twk.test on port 389"));
  }
  EXPECT_EQ(told.size(), 1U);
  control("start");
  EXPECT_EQ(domain.ldap().read("", {"dnsHostName"}).first("dnsHostName"), "dc1.twk.test");
  ASSERT_EQ(told.size(), 2U);
  EXPECT_THAT(told[1], HasSubstr("connected again"));
}

TEST(LostConnection, InTheMiddleOfAWalkIsReportedAndTheNextWalkIsWhole) {
  LiveSettings settings = live_settings();
  settings.timeout_seconds = 3;
  LiveDomain domain(settings);
  live::LdapSearch search;
  search.base = domain.root_dn();
  search.attributes = {"1.1"};
  search.page_size = 20;
  const auto walk = [&](int stop_after, const char* how) {
    int entries = 0;
    domain.ldap().search(search, [&](live::LdapEntry&&) {
      if (++entries == stop_after)
        control(how);
      return true;
    });
    return entries;
  };
  const int all = walk(0, "");
  ASSERT_GT(all, 60);
  for (const auto& [how, back] : {std::pair("stop", "start"), std::pair("stall", "resume")}) {
    base::Trap trap;
    EXPECT_FALSE(trap([&] { walk(25, how); })) << how;
    EXPECT_EQ(trap.number(), ads_error::kServerDown) << how;
    control(back);
    EXPECT_EQ(walk(0, ""), all) << how;
  }
}

TEST(LostConnection, DoesNotEndTheProgramWhileWalksAreLeftInTheMiddle) {
  local::outlive_refused_writes();
  LiveDomain domain(live_settings());
  live::LdapSearch search;
  search.base = domain.root_dn();
  search.page_size = 5;
  std::array<live::LdapCursor, 4> walks;
  for (live::LdapCursor& walk : walks)
    EXPECT_EQ(domain.ldap().search_page(search, walk).size(), 5U);
  control("stop");
  for (live::LdapCursor& walk : walks)
    walk.restart();
  control("start");
  EXPECT_EQ(domain.ldap().search_page(search, walks[0]).size(), 5U);
}

TEST(EndedTicket, IsReportedDuringTheWorkAndARenewedOneIsUsed) {
  const TemporaryDirectory folder;
  const Variable other("KRB5CCNAME", "FILE:" + (folder / "ticket"));
  get_ticket(folder / "ticket", 3600);
  std::vector<std::string> told;
  LiveDomain domain(live_settings(),
                    {.password = {}, .tell = [&](const std::string& text) { told.push_back(text); }});
  EXPECT_EQ(domain.netbios(), "TWK");
  {
    const Variable shift("TWK_CLOCK_SHIFT", "7200");
    base::Trap trap;
    EXPECT_FALSE(trap([&] { domain.ldap().read("", {"dnsHostName"}); }));
    EXPECT_EQ(trap.number(), ads_error::kLogonFailure);
    EXPECT_FALSE(trap([&] { domain.ldap().read("", {"dnsHostName"}); }));
    ASSERT_EQ(told.size(), 1U);
    EXPECT_THAT(told[0], HasSubstr("TWK.TEST ended at "));
  }
  std::filesystem::remove(folder / "ticket");
  EXPECT_THAT(complaint_of([&] { domain.ldap().read("", {"dnsHostName"}); }),
              HasSubstr("There is no Kerberos ticket"));
  get_ticket(folder / "ticket", 3600);
  EXPECT_EQ(domain.ldap().read("", {"dnsHostName"}).first("dnsHostName"), "dc1.twk.test");
  EXPECT_THAT(told.back(), HasSubstr("connected again"));
}

TEST(Snapshot, ThatIsStoppedLeavesNothingBehind) {
  const TemporaryDirectory folder;
  const auto ground =
      world::real_domains().make_ground(live_settings(), {}, {folder / "config", folder / "data"}, {});
  EXPECT_FALSE(
      world::take_snapshot(*ground->real(), folder / "lab", [](std::size_t entries) { return entries < 5; }));
  EXPECT_FALSE(std::filesystem::exists(folder / "lab"));
}

}  // namespace
}  // namespace twk::test
