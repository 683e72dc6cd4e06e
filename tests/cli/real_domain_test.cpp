#include "cli/twk_fixture.hpp"
#include "session/editor_windows.hpp"

namespace twk::test {
namespace {

using testing::AllOf;
using testing::HasSubstr;
using testing::Not;

/// The program without a lab: its settings and database are the person's own.
class RealDomain : public testing::Test {
 protected:
  ~RealDomain() override { std::filesystem::remove_all(home()); }
};

TEST_F(RealDomain, SettingsAndDatabaseAreThePersonsOwnAndNeedNoDomain) {
  ASSERT_EQ(twk({"settings", "set", "Live", "Method", "starttls"}).exit_code, 0);
  EXPECT_EQ(twk({"settings", "get", "Live", "Method"}).out, "starttls\n");
  EXPECT_TRUE(std::filesystem::exists(home() + "/config/tarnwick/settings/HKEY_LOCAL_MACHINE.reg"));
  ASSERT_EQ(twk({"site", "add", "London", "--nt-server", "LON1"}).exit_code, 0);
  EXPECT_THAT(twk({"site", "list"}).out, HasSubstr("London"));
  const std::string database = home() + "/data/tarnwick/db";
  EXPECT_TRUE(std::filesystem::exists(database + "/Site.dat"));
  EXPECT_EQ(std::filesystem::status(database).permissions(), std::filesystem::perms::owner_all);
}

TEST_F(RealDomain, InvalidSettingsAreReportedByWhatNeedsThemAndCanBeCorrected) {
  ASSERT_EQ(twk({"settings", "set", "Setup", "Domain", "twk.test"}).exit_code, 0);
  ASSERT_EQ(twk({"settings", "set", "Live", "Method", "ldaps"}).exit_code, 0);
  const ProgramResult result = twk({"user", "list"});
  EXPECT_EQ(result.exit_code, 64);
  EXPECT_THAT(result.err, AllOf(HasSubstr("below Live"), HasSubstr("needs a user")));
  EXPECT_EQ(twk({"settings", "set", "Live", "User", "jo"}).exit_code, 0);
}

TEST_F(RealDomain, IsTheOneOfTheSettingsAndItsFailureNamesTheReason) {
  ASSERT_EQ(twk({"settings", "set", "Setup", "Domain", "twk.test"}).exit_code, 0);
  ASSERT_EQ(twk({"settings", "set", "Live", "Server", "127.0.0.1"}).exit_code, 0);
  ASSERT_EQ(twk({"settings", "set", "Live", "Port", "1"}).exit_code, 0);
  const ProgramResult result = twk({"user", "list"});
  EXPECT_EQ(result.exit_code, 2);
  EXPECT_THAT(result.err, AllOf(HasSubstr("127.0.0.1 on port 1"), HasSubstr("Connection refused")));
  EXPECT_EQ(result.out, "");
}

TEST_F(RealDomain, DoctorPrintsEveryStepAndEndsWithTheWorst) {
  const ProgramResult result =
      twk({"--json", "--domain", "twk.test", "--server", "127.0.0.1", "--port", "1", "doctor"});
  EXPECT_EQ(result.exit_code, 2);
  const auto steps = json_lines(result.out);
  ASSERT_EQ(steps.size(), 6U);
  EXPECT_EQ(steps[0]["step"], "name look-up");
  EXPECT_EQ(steps[0]["outcome"], "passed");
  EXPECT_EQ(steps[1]["outcome"], "failed");
  EXPECT_EQ(steps[3]["outcome"], "failed");
  EXPECT_EQ(steps[5]["outcome"], "skipped");
  EXPECT_THAT(
      twk({"--domain", "twk.test", "--server", "127.0.0.1", "--port", "1", "doctor"}).out,
      AllOf(HasSubstr("GREEN    name look-up"), HasSubstr("RED      port"), HasSubstr("SKIPPED  TLS")));
}

TEST_F(RealDomain, IsUsedByItsNameAlthoughTheEnvironmentNamesALab) {
  ProgramRun run;
  run.environment = {{"TWK_LAB", "/nonexistent"}};
  const ProgramResult result = twk({"--domain", "twk.test", "--server", "127.0.0.1", "doctor"}, {}, run);
  EXPECT_THAT(result.out, HasSubstr("There is no Kerberos ticket"));
}

TEST_F(RealDomain, AMissingPasswordFileIsBadInput) {
  const ProgramResult result = twk({"--domain", "twk.test", "--server", "127.0.0.1", "--user", "jo",
                                    "--logon-password-file", "/nonexistent/password", "doctor"});
  EXPECT_EQ(result.exit_code, 65);
  EXPECT_THAT(result.err, HasSubstr("/nonexistent/password"));
}

TEST_F(RealDomain, ThePasswordOfTheEnvironmentIsNotShown) {
  ProgramRun run;
  run.environment = {{"TWK_LOGON_PASSWORD", "very-secret"}};
  const ProgramResult result =
      twk({"--domain", "twk.test", "--server", "127.0.0.1", "--user", "jo", "doctor"}, {}, run);
  EXPECT_EQ(result.exit_code, 2);
  EXPECT_THAT(result.out + result.err, Not(HasSubstr("very-secret")));
}

TEST_F(RealDomain, ACopyIsNotMadeOverSomethingElse) {
  const TemporaryDirectory folder;
  put_file(folder / "precious", "x");
  const ProgramResult result =
      twk({"--domain", "twk.test", "lab", "import", "--live", folder.path().string()});
  EXPECT_EQ(result.exit_code, 2);
  EXPECT_THAT(result.err, HasSubstr("is not an empty folder"));
}

}  // namespace
}  // namespace twk::test
