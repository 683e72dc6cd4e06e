#include "local/system_process.hpp"

#include <signal.h>
#include <sys/wait.h>

#include <cerrno>
#include <chrono>
#include <thread>

#include "support/temporary_directory.hpp"

namespace twk::local {
namespace {

using test::get_file;

constexpr std::int16_t kHidden = 0;
constexpr std::int16_t kNormal = 1;

class SystemProcessTest : public testing::Test {
 protected:
  /// A command line of the shell, for scripts without double quotes.
  static std::string shell(const std::string& script) { return "sh -c \"" + script + "\""; }
  static bool has_children() { return waitpid(-1, nullptr, WNOHANG) != -1 || errno != ECHILD; }

  /// Looks for up to two seconds: the system names a process a moment after its program was found.
  static bool is_named(std::int32_t number, std::string_view name) {
    for (int i = 0; i < 200; ++i) {
      if (get_file("/proc/" + std::to_string(number) + "/comm") == name)
        return true;
      std::this_thread::sleep_for(std::chrono::milliseconds(10));
    }
    return false;
  }

  test::TemporaryDirectory folder_;
  SystemProcess process_;
};

TEST_F(SystemProcessTest, WaitsForTheEndWhateverTheExitCode) {
  EXPECT_EQ(process_.run(shell("sleep 0.05; echo done > " + folder_ / "out" + "; exit 3"), true, kNormal), 1);
  EXPECT_EQ(get_file(folder_ / "out"), "done\n");
  EXPECT_FALSE(has_children());
}

TEST_F(SystemProcessTest, NothingIsExpandedOnTheWay) {
  EXPECT_EQ(process_.run("touch \"" + folder_ / "$HOME `id` *;x" + "\" " + folder_ / "a\\b", true, kNormal),
            1);
  EXPECT_TRUE(std::filesystem::exists(folder_ / "$HOME `id` *;x"));
  EXPECT_TRUE(std::filesystem::exists(folder_ / "a\\b"));
}

TEST_F(SystemProcessTest, WhatCannotBeStartedGivesZero) {
  const std::string with_nul("true\0x", 6);
  for (const std::string& line : {std::string(), std::string("  "), std::string("\"\" x"), with_nul,
                                  std::string("/nowhere/program"), folder_.path().string()}) {
    EXPECT_EQ(process_.run(line, true, kNormal), 0) << line;
    EXPECT_EQ(process_.run(line, false, kNormal), 0) << line;
  }
  EXPECT_FALSE(has_children());
}

TEST_F(SystemProcessTest, ProgramNotWaitedForRunsOnAndLeavesNoChild) {
  const auto start = std::chrono::steady_clock::now();
  const std::int32_t number = process_.run("sleep 30", false, kHidden);
  EXPECT_LT(std::chrono::steady_clock::now() - start, std::chrono::seconds(20));
  ASSERT_GT(number, 1);
  EXPECT_TRUE(is_named(number, "sleep\n"));
  EXPECT_FALSE(has_children());
  EXPECT_EQ(kill(number, SIGKILL), 0);
}

TEST_F(SystemProcessTest, HiddenProgramSpeaksToNobody) {
  testing::internal::CaptureStdout();
  testing::internal::CaptureStderr();
  const std::int32_t hidden = process_.run(shell("cat; echo hidden; echo hidden >&2"), true, kHidden);
  const std::int32_t seen = process_.run("echo seen", true, kNormal);
  const std::string output = testing::internal::GetCapturedStdout();
  EXPECT_EQ(testing::internal::GetCapturedStderr(), "");
  EXPECT_EQ(output, "seen\n");
  EXPECT_EQ(hidden + seen, 2);
}

TEST(CommandLineTest, QuotesHoldWordsTogether) {
  using Words = std::vector<std::string>;
  const struct {
    std::string line;
    Words words;
  } cases[] = {
      {"", {}},
      {" \t ", {}},
      {"a  b\tc ", {"a", "b", "c"}},
      {"\"C:\\My Scripts\\a.cmd\" \"x y\"z", {"C:\\My Scripts\\a.cmd", "x yz"}},
      {"a \"\" b", {"a", "", "b"}},
      {"a \"b c", {"a", "b c"}},
      {"it's $HOME", {"it's", "$HOME"}},
  };
  for (const auto& one : cases)
    EXPECT_EQ(split_command_line(one.line), one.words) << one.line;
}

}  // namespace
}  // namespace twk::local
