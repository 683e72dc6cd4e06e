#include "app/command_line.hpp"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <cstdlib>
#include <vector>

namespace twk::test {
namespace {

using app::Options;

std::optional<int> parse(std::vector<std::string> words, Options& options) {
  words.insert(words.begin(), "tarnwick");
  std::vector<char*> arguments;
  for (std::string& word : words)
    arguments.push_back(word.data());
  return app::parse(static_cast<int>(arguments.size()), arguments.data(), options);
}

TEST(DesktopCommandLine, TakesLabDatabaseAndSwitches) {
  struct Case {
    std::vector<std::string> words;
    std::string lab;
    std::string database;
    std::string command_line;
  };
  for (const Case& given : std::vector<Case>{{{}, "", "", ""},
                                             {{"--lab", "a", "--db", "b"}, "a", "b", ""},
                                             {{"--debug", "--lab=a"}, "a", "", "/DEBUG"},
                                             {{"/DEBUG"}, "", "", "/DEBUG"},
                                             {{"/debug1"}, "", "", "/DEBUG1"}}) {
    Options options;
    EXPECT_EQ(parse(given.words, options), std::nullopt);
    EXPECT_EQ(options.lab, given.lab);
    EXPECT_EQ(options.database, given.database);
    EXPECT_EQ(options.command_line, given.command_line);
  }
}

TEST(DesktopCommandLine, TakesARealDomainInsteadOfTheLabOfTheEnvironment) {
  setenv("TWK_LAB", "from-environment", 1);
  Options options;
  EXPECT_EQ(parse({"--domain", "twk.test", "--method=ldaps", "--user", "jo"}, options), std::nullopt);
  EXPECT_EQ(options.lab, "");
  EXPECT_EQ(options.connection.domain, "twk.test");
  EXPECT_EQ(options.connection.method, "ldaps");
  EXPECT_EQ(options.connection.user, "jo");
  Options both;
  EXPECT_EQ(parse({"--lab", "a", "--server", "dc1"}, both), app::kExitUsage);
  unsetenv("TWK_LAB");
}

TEST(DesktopCommandLine, RefusesWhatItDoesNotKnow) {
  for (const std::vector<std::string>& words : std::vector<std::vector<std::string>>{
           {"/DEBUG", "more"}, {"--lab"}, {"--nonsense"}, {"a\nb"}, {"--lab", "\xFF"}}) {
    Options options;
    EXPECT_EQ(parse(words, options), app::kExitUsage) << words.front();
    EXPECT_EQ(options.command_line, "");
  }
}

TEST(DesktopCommandLine, TakesTheLabOfTheEnvironmentUnlessOneIsNamed) {
  setenv("TWK_LAB", "from-environment", 1);
  Options options;
  parse({"/DEBUG"}, options);
  EXPECT_EQ(options.lab, "from-environment");
  parse({"--lab", "named"}, options);
  EXPECT_EQ(options.lab, "named");
  unsetenv("TWK_LAB");
}

TEST(DesktopCommandLine, AnswersHelpAndVersionWithoutAScreen) {
  for (auto [option, answer] : std::vector<std::pair<std::string, std::string>>{{"--help", "--lab DIR"},
                                                                                {"--version", "tarnwick "}}) {
    std::string program = "tarnwick";
    std::array<char*, 2> arguments = {program.data(), option.data()};
    testing::internal::CaptureStdout();
    EXPECT_EQ(app::answer_without_screen(2, arguments.data()), 0);
    EXPECT_THAT(testing::internal::GetCapturedStdout(), testing::HasSubstr(answer));
  }
}

}  // namespace
}  // namespace twk::test
