#include <gmock/gmock.h>

#include "live/nt/nt_world.hpp"
#include "support/run_program.hpp"
#include "support/temporary_directory.hpp"

/// The command line in a domain without a directory.
namespace twk::live {
namespace {

using NtProgram = test::NtDomainTest;

TEST_F(NtProgram, RefusedLogonAndMissingServerAreDistinguished) {
  const test::TemporaryDirectory folder;
  const struct {
    std::string server;
    std::vector<std::string> command;
    int exit_code;
    const char* told;
  } cases[] = {{server_, {"user", "list"}, 77, "logon"},
               {server_, {"share", "list", server_}, 77, "logon"},
               {"NOWHERE", {"user", "list"}, 2, "NOWHERE"}};
  for (const auto& one : cases) {
    std::vector<std::string> words = {TWK_BIN_DIR "/twk", "--no-input", "--domain", "OLDNT",
                                      "--server",         one.server,   "--user",   "root"};
    words.insert(words.end(), one.command.begin(), one.command.end());
    const test::ProgramResult result =
        test::run_program({.arguments = std::move(words),
                           .input = {},
                           .environment = {{"XDG_CONFIG_HOME", folder / "config"},
                                           {"XDG_DATA_HOME", folder / "data"},
                                           {"TWK_LOGON_PASSWORD", "wrong"}}});
    EXPECT_EQ(result.exit_code, one.exit_code) << result.out << result.err;
    EXPECT_THAT(result.err, testing::HasSubstr(one.told));
  }
}

}  // namespace
}  // namespace twk::live
