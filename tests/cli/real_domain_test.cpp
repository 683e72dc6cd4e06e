#include "cli/twk_fixture.hpp"
#include "windows/state/editor_windows.hpp"

namespace twk::test {
namespace {

using testing::HasSubstr;
using testing::Not;

/// The program without a lab: its settings and database are the person's own.
class RealDomain : public testing::Test {
 protected:
  ~RealDomain() override { std::filesystem::remove_all(home()); }
};

TEST_F(RealDomain, SettingsAndDatabaseAreThePersonsOwnAndNeedNoDomain) {
  play_without_lab(R"(
$ settings set Live Method starttls
$ settings get Live Method
> starttls
$ site add London --nt-server LON1
$ site list
| London
)");
  EXPECT_TRUE(std::filesystem::exists(home() + "/config/tarnwick/settings/HKEY_LOCAL_MACHINE.reg"));
  const std::string database = home() + "/data/tarnwick/db";
  EXPECT_TRUE(std::filesystem::exists(database + "/Site.dat"));
  EXPECT_EQ(std::filesystem::status(database).permissions(), std::filesystem::perms::owner_all);
}

TEST_F(RealDomain, InvalidSettingsAreReportedByWhatNeedsThemAndCanBeCorrected) {
  play_without_lab(R"(
$ settings set Setup Domain twk.test
$ settings set Live Method ldaps
$ user list => 64 below Live
! needs a user
$ settings set Live User jo
)");
}

TEST_F(RealDomain, IsTheOneOfTheSettingsAndItsFailureNamesTheReason) {
  play_without_lab(R"(
$ settings set Setup Domain twk.test
$ settings set Live Server 127.0.0.1
$ settings set Live Port 1
$ user list => 2 127.0.0.1 on port 1
! Connection refused
>
)");
}

TEST_F(RealDomain, DoctorPrintsEveryStepAndEndsWithTheWorst) {
  play_without_lab(R"(
$ --domain twk.test --server 127.0.0.1 --port 1 doctor => 2
{"step": "name look-up", "outcome": "passed"}
{"outcome": "failed"}
{}
{"outcome": "failed"}
{}
{"step": "rights", "outcome": "skipped"}
{"step": "clock"}
{"step": "site"}
{"step": "catalogue", "outcome": "skipped"}
$ --domain twk.test --server 127.0.0.1 --port 1 doctor => 2
| GREEN    name look-up
| RED      port
| SKIPPED  TLS
$ --domain twk.test --server 127.0.0.1 --user jo --logon-password-file /nonexistent/password doctor
  => 65 /nonexistent/password
)");
}

TEST_F(RealDomain, IsUsedByItsNameAlthoughTheEnvironmentNamesALab) {
  ProgramRun run;
  run.environment = {{"TWK_LAB", "/nonexistent"}};
  const ProgramResult result = twk({"--domain", "twk.test", "--server", "127.0.0.1", "doctor"}, {}, run);
  EXPECT_THAT(result.out, HasSubstr("There is no Kerberos ticket"));
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
  play_without_lab("$ --domain twk.test lab import --live $FOLDER => 2 is not an empty folder",
                   {{"$FOLDER", {folder.path().string()}}});
}

}  // namespace
}  // namespace twk::test
