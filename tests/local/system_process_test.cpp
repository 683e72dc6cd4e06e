#include "local/system_process.hpp"

#include <fcntl.h>
#include <signal.h>
#include <sys/wait.h>
#include <unistd.h>

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
  std::string run(const std::string& script, std::int16_t window_style = kNormal) {
    return process_.run({"sh", "-c", script}, true, window_style).failure;
  }
  static bool has_children() { return waitpid(-1, nullptr, WNOHANG) != -1 || errno != ECHILD; }

  /// Tries for up to two seconds: the system names a process a moment after its program was found.
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

TEST_F(SystemProcessTest, WaitsForTheEndAndReportsTheFailure) {
  EXPECT_EQ(run("sleep 0.05; echo done > " + folder_ / "out"), "");
  EXPECT_EQ(get_file(folder_ / "out"), "done\n");
  EXPECT_EQ(run("exit 3"), "it ended with exit code 3");
  EXPECT_EQ(run("kill -KILL $$"), "it was ended by signal 9");
  EXPECT_EQ(process_.run({"true"}, true, kNormal).number, 1);
  EXPECT_FALSE(has_children());
}

TEST_F(SystemProcessTest, WordsArriveUnchanged) {
  const std::string odd = folder_ / "$HOME `id` *;\"x\\y";
  EXPECT_EQ(process_.run({"touch", odd}, true, kNormal).failure, "");
  EXPECT_TRUE(std::filesystem::exists(odd));
}

TEST_F(SystemProcessTest, WhatCannotBeStartedSaysWhy) {
  using Words = std::vector<std::string>;
  const std::pair<Words, const char*> cases[] = {
      {{}, "it has no name"},
      {{"", "x"}, "it has no name"},
      {{"true", std::string("a\0b", 3)}, "a word of it holds the character <U+0000>"},
      {{"/nowhere/program"}, "No such file or directory"},
      {{folder_.path().string()}, "Permission denied"}};
  for (const auto& [words, why] : cases) {
    for (const bool wait : {true, false}) {
      const platform::ProgramResult result = process_.run(words, wait, kNormal);
      EXPECT_EQ(result.number, 0);
      EXPECT_EQ(result.failure, std::string("it could not be started: ") + why);
      EXPECT_EQ(process_.cannot_start(words), result.failure);
    }
  }
  EXPECT_FALSE(has_children());
}

TEST_F(SystemProcessTest, ProgramNotWaitedForRunsOnAndLeavesNoChild) {
  const auto start = std::chrono::steady_clock::now();
  const std::int32_t number = process_.run({"sleep", "30"}, false, kHidden).number;
  EXPECT_LT(std::chrono::steady_clock::now() - start, std::chrono::seconds(20));
  ASSERT_GT(number, 1);
  EXPECT_TRUE(is_named(number, "sleep\n"));
  EXPECT_FALSE(has_children());
  EXPECT_EQ(kill(number, SIGKILL), 0);
}

TEST_F(SystemProcessTest, ProgramGetsNoInputAndWritesOnlyToStandardError) {
  testing::internal::CaptureStdout();
  testing::internal::CaptureStderr();
  const std::string failures = run("cat; echo hidden; echo hidden >&2", kHidden) + run("cat; echo seen");
  EXPECT_EQ(testing::internal::GetCapturedStdout(), "");
  EXPECT_EQ(testing::internal::GetCapturedStderr(), "seen\n");
  EXPECT_EQ(failures, "");
}

TEST_F(SystemProcessTest, SecretsAndOpenFilesStayHere) {
  const int open_file = open("/dev/null", O_RDONLY);  // without O_CLOEXEC, as from a shell's "5<file"
  setenv("TWK_LOGON_PASSWORD", "s3cret", 1);
  EXPECT_EQ(run("test -n \"$PATH\" && ! env | grep s3cret && ! test -e /dev/fd/" + std::to_string(open_file)),
            "");
  unsetenv("TWK_LOGON_PASSWORD");
  close(open_file);
  const std::pair<const char*, bool> variables[] = {
      {"PASSWD=x", true},       {"PASSWD_FD=3", true}, {"My_Secret=x", true},   {"GITHUB_TOKEN=x", true},
      {"USER=jo%s3cret", true}, {"USER=jo", false},    {"KRB5CCNAME=x", false}, {"PATH=/PASSWORD", false}};
  for (const auto& [variable, secret] : variables)
    EXPECT_EQ(is_secret_variable(variable), secret) << variable;
}

}  // namespace
}  // namespace twk::local
