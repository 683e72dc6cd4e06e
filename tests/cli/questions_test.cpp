#include "cli/twk_fixture.hpp"

namespace twk::test {
namespace {

using testing::AllOf;
using testing::HasSubstr;
using testing::Not;

struct QuestionCase {
  const char* what;
  Arguments options;
  bool terminal;
  const char* typed;
  bool deleted;
};

class DeletingASite : public TwkLab, public testing::WithParamInterface<QuestionCase> {};

TEST_P(DeletingASite, DependsOnTheAnswer) {
  Arguments arguments = GetParam().options;
  arguments.insert(arguments.end(), {"site", "delete", "head office"});
  ProgramRun how;
  how.terminal = GetParam().terminal;
  const ProgramResult result = run(arguments, GetParam().typed, how);
  EXPECT_EQ(result.exit_code, GetParam().deleted ? 0 : 2);
  EXPECT_THAT(GetParam().terminal ? result.out : result.err, HasSubstr("Sure to Delete Site Record"));
  EXPECT_EQ(run({"site", "list"}).out.empty(), GetParam().deleted);
}

INSTANTIATE_TEST_SUITE_P(Questions, DeletingASite,
                         testing::Values(QuestionCase{"YesOption", {"--yes"}, false, "", true},
                                         QuestionCase{"NobodyToAsk", {}, false, "", false},
                                         QuestionCase{"YesInAPipeIsNoAnswer", {}, false, "yes\n", false},
                                         QuestionCase{"NoInputOnATerminal", {"--no-input"}, true, "", false},
                                         QuestionCase{"TypedYes", {}, true, "perhaps\ny\n", true},
                                         QuestionCase{"TypedNo", {}, true, "n\n", false},
                                         QuestionCase{"CtrlC", {}, true, "\x03", false}),
                         [](const auto& named) { return named.param.what; });

using Passwords = TwkLab;

TEST_F(Passwords, FromStandardInputAreUsedExactlyAsTheyAre) {
  const ProgramResult refused = create({"--ou", kNewStarters, "--password-stdin", "Al", "Bo"}, "short\n");
  EXPECT_EQ(refused.exit_code, 1) << refused.err;
  const ProgramResult taken =
      create({"--ou", kNewStarters, "--password-stdin", "Cy", "Day"}, "%first%-Prompt-1\n");
  EXPECT_EQ(taken.exit_code, 0) << taken.err;
}

TEST_F(Passwords, ThatAreMissingOnStandardInputCreateNobody) {
  EXPECT_EQ(create({"--ou", kNewStarters, "--password-stdin", "Al", "Bo"}, "").exit_code, 65);
  EXPECT_EQ(run({"user", "show", "Al.Bo"}).exit_code, 2);
}

TEST_F(Passwords, ThatAreTypedDoNotShow) {
  ASSERT_EQ(run({"settings", "set", "Setup", "Password", "PROMPT"}).exit_code, 0);
  ProgramRun how;
  how.terminal = true;
  how.environment = {{"TERM", "dumb"}};
  const ProgramResult result = run(
      {"user", "create", "--template", "Staff", "--site", "Head Office", "--ou", kNewStarters, "Al", "Bo"},
      "Sesame-Open-1\n", how);
  EXPECT_EQ(result.exit_code, 0) << result.out;
  EXPECT_THAT(result.out, AllOf(HasSubstr("Enter User Password:"), Not(HasSubstr("Sesame"))));
}

TEST_F(Passwords, AreNeitherTakenFromTheCommandLineNorShownUnasked) {
  const ProgramResult refused = run({"settings", "set", "Setup", "Password", "Sesame-Open-1"});
  EXPECT_EQ(refused.exit_code, 64);
  EXPECT_EQ(run({"settings", "set", "Setup", "Password"}, "Sesame-Open-1\n").exit_code, 0);
  for (const std::vector<std::string>& command : std::vector<std::vector<std::string>>{
           {"settings", "get", "setup", "password"}, {"settings", "list"}, {"settings", "export"}}) {
    const ProgramResult hidden = run(command);
    EXPECT_EQ(hidden.exit_code, 0);
    EXPECT_THAT(hidden.out + hidden.err, Not(HasSubstr("Sesame"))) << command[1];
    std::vector<std::string> shown = command;
    shown.emplace_back("--show-secrets");
    EXPECT_THAT(run(shown).out, HasSubstr("Sesame-Open-1")) << command[1];
  }
}

}  // namespace
}  // namespace twk::test
