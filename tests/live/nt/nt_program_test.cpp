#include <gmock/gmock.h>

#include "live/nt/nt_world.hpp"
#include "support/run_program.hpp"
#include "support/temporary_directory.hpp"

/// The command line in a domain without a directory.
namespace twk::live {
namespace {

using testing::HasSubstr;

class NtProgram : public test::NtDomainTest {
 protected:
  test::ProgramResult twk(std::vector<std::string> arguments) {
    std::vector<std::string> all = {
        TWK_BIN_DIR "/twk", "--no-input", "--domain", "OLDNT",
        "--server",         server_,      "--user",   test::variable("TWK_LIVE_ADMIN")};
    std::move(arguments.begin(), arguments.end(), std::back_inserter(all));
    return test::run_program({.arguments = std::move(all),
                              .input = {},
                              .environment = {{"XDG_CONFIG_HOME", folder_ / "config"},
                                              {"XDG_DATA_HOME", folder_ / "data"},
                                              {"TWK_LOGON_PASSWORD", test::variable("TWK_LIVE_PASSWORD")}}});
  }
  void must(std::vector<std::string> arguments) {
    const test::ProgramResult result = twk(std::move(arguments));
    ASSERT_EQ(result.exit_code, 0) << result.out << result.err;
  }

  test::TemporaryDirectory folder_;
};

TEST_F(NtProgram, UserIsCreatedWithHomeShareGroupAndTerminalSettings) {
  must({"site", "add", "Main", "--nt-server", server_});
  must({"template", "add", "Staff", "--home-dir", "\\\\%Server%\\%UserName%$", "--home-dir-path",
        "D:\\Users\\%UserName%", "--home-share", "%UserName%$", "--home-drive", "H:", "--group", "Helpers"});
  // Yellow: the tables of permissions are empty.
  const test::ProgramResult made = twk({"user", "create", "--site", "Main", "--template", "Staff", "--id",
                                        "jsmith", "--description", "Clerk", "John", "Smith"});
  EXPECT_THAT(made.out, HasSubstr("jsmith Created User")) << made.err;
  must({"ts", "set", "jsmith", "profile=\\\\OLDPDC\\P\\jsmith"});

  EXPECT_EQ(account("jsmith")->Get("Description").text(), "Clerk");
  EXPECT_EQ(account("jsmith")->Get("HomeDirectory").text(), "\\\\OLDPDC\\jsmith$");
  EXPECT_EQ(network_.NetShareGetInfo(server_, "jsmith$").shi502_path, "C:\\Users\\jsmith");
  EXPECT_EQ(contract::names_of(account("jsmith")->Groups()), "Domain Users;Helpers");
  EXPECT_EQ(
      network_.WTSQueryUserConfig(server_, "jsmith", platform::WtsConfigClass::kTerminalServerProfilePath),
      platform::WtsConfigValue("\\\\OLDPDC\\P\\jsmith"));
  const std::string home = "\\\\OLDPDC\\D$\\Users\\jsmith";
  EXPECT_TRUE(files_.is_directory(home));
  files_.remove_directory(home);
  const test::ProgramResult again =
      twk({"user", "create", "--site", "Main", "--template", "Staff", "--id", "jsmith", "John", "Smith"});
  EXPECT_EQ(again.exit_code, 2) << again.out;
}

TEST_F(NtProgram, RefusedLogonAndMissingServerAreDistinguished) {
  const auto logon = [&](const std::string& server, const std::string& password,
                         const std::vector<std::string>& command) {
    std::vector<std::string> all = {TWK_BIN_DIR "/twk", "--no-input", "--domain", "OLDNT",
                                    "--server",         server,       "--user",   "root"};
    all.insert(all.end(), command.begin(), command.end());
    return test::run_program({.arguments = std::move(all),
                              .input = {},
                              .environment = {{"XDG_CONFIG_HOME", folder_ / "config"},
                                              {"XDG_DATA_HOME", folder_ / "data"},
                                              {"TWK_LOGON_PASSWORD", password}}});
  };
  for (const std::vector<std::string>& command :
       {std::vector<std::string>{"user", "list"}, {"share", "list", server_}}) {
    const test::ProgramResult refused = logon(server_, "wrong", command);
    EXPECT_EQ(refused.exit_code, 77) << refused.out << refused.err;
    EXPECT_THAT(refused.err, HasSubstr("logon"));
  }
  const test::ProgramResult missing = logon("NOWHERE", "any", {"user", "list"});
  EXPECT_EQ(missing.exit_code, 2) << missing.out << missing.err;
  EXPECT_THAT(missing.err, HasSubstr("NOWHERE"));
}

}  // namespace
}  // namespace twk::live
